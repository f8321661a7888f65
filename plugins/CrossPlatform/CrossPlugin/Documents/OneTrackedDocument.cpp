#include "Documents/OneTrackedDocument.h"

#include "Identification/FontClassification.h"
#include "Services/DiagnosticLog.h"
#include "Services/VelorantFileUtils.h"
#include "platform/Clock.h"

void OneTrackedDocument::SetDocumentFilePath(const std::string& path) {
  OutputIndentedAndFormattedString(0, "OneTrackedDocument::SetDocumentFilePath('%s')", path.c_str());
  mDocumentFilePath = path;
}

void OneTrackedDocument::SetTimeOpenEventWasHandled() { mTimeOpenEventWasHandled = platform::Clock::WholeSeconds(); }
void OneTrackedDocument::SetTimeSaveEventWasHandled() { mTimeSaveEventWasHandled = platform::Clock::WholeSeconds(); }

void OneTrackedDocument::SetLastKnownModificationTime(long time) {
  OutputIndentedAndFormattedString(0, "%s(%d)", __func__, static_cast<int>(time));
  mLastKnownModificationTime = time;
}

unsigned long long OneTrackedDocument::RetrieveModificationTimeFromFile() const {
  return VelorantFileUtils::GetFileModificationDate(mDocumentFilePath);
}

bool OneTrackedDocument::GetHasMissingFonts() const {
  return mUnresolvedFonts && GlyphsureSupport::CountMissingFonts(mUnresolvedFonts) >= 1;
}
