#include "docfonts/RewrittenPDF.h"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

void RewritePDF(const std::string& from, const std::string& to, PDFForm form) {
  QPDF pdf;
  pdf.setSuppressWarnings(true);
  pdf.processFile(from.c_str());
  QPDFWriter writer(pdf, to.c_str());
  const char* password = form == PDFForm::kLocked ? "user" : "";
  switch (form) {
    case PDFForm::kObjectStreams: writer.setObjectStreamMode(qpdf_o_generate); break;
    case PDFForm::kLinear: writer.setLinearization(true); break;
    case PDFForm::kEncrypted:
    case PDFForm::kLocked:
      writer.setR6EncryptionParameters(password, "owner", true, true, true, true, true, true, qpdf_r3p_full, true);
      break;
  }
  writer.write();
}
