// The streams under the document parsers, and how a file is taken for one kind or the other.
#include <gmock/gmock.h>
#include <sys/stat.h>

#include "Readers/FontParser.h"
#include "platform/Trace.h"
#include "support/TempFolder.h"

namespace {

using platform::FileURL;
using platform::PathStyle;
using Paths = std::vector<std::string>;

class StreamFixture : public ::testing::Test {
 protected:
  bool Open(const std::string& path, bool readOnly = true) {
    return OpenFileStreamFromCFURLRef(FileURL::FromPath(path, PathStyle::kPOSIX), path, stream, readOnly);
  }
  test_support::TempFolder folder;
  FStreamWrapper stream;
};

TEST_F(StreamFixture, FileTypeIsToldByGroupsOfFourInTheFirstThousandBytes) {
  struct Case {
    std::string content;
    FontParser::EFileType type;
  };
  const std::string blanks(2000, ' ');
  const Case cases[] = {
      {"%PDF", FontParser::kPDFFile},
      {"    %PDF-1.4", FontParser::kPDFFile},
      {"  %PDF-1.4" + blanks, FontParser::kEPSFile},  // at no multiple of 4
      {"  %PDF-1.4", FontParser::kUnknownFile},
      {blanks.substr(0, 996) + "%PDF", FontParser::kPDFFile},
      {blanks.substr(0, 1000) + "%PDF", FontParser::kEPSFile},
      {blanks.substr(0, 999), FontParser::kUnknownFile},
      {"%!PS", FontParser::kUnknownFile},
      {"", FontParser::kUnknownFile},
  };
  for (const Case& c : cases) {
    const std::string path = folder.Write("file", c.content);
    EXPECT_EQ(FontParser::DetermineFileTypeOfFile(FileURL::FromPath(path, PathStyle::kPOSIX), path), c.type)
        << c.content.substr(0, 20) << " of " << c.content.size();
  }
  EXPECT_EQ(FontParser::DetermineFileTypeOfFile(FileURL(), folder / "missing"), FontParser::kEPSFile);
}

TEST_F(StreamFixture, OpensByURLOrElseByPath) {
  const std::string text = "text";
  const std::string name = folder.Write("n\xC3\xA4me", text), latin = folder.Write("n\xE4me", text);
  EXPECT_TRUE(Open(name));
  stream = {};
  EXPECT_TRUE(OpenFileStreamFromCFURLRef(FileURL::FromFileSystemRepresentation(latin), latin, stream, true));
  stream = {};
  EXPECT_FALSE(Open(latin)) << "no UTF-8 and no URL";
  // Without a URL, and for a path that is too long for one.
  EXPECT_TRUE(OpenFileStreamFromCFURLRef(FileURL::FromPath(name, PathStyle::kHFS), name, stream, true));
  stream = {};
  std::string deep = folder.Path();
  while (deep.size() < 1100) deep += "/" + std::string(100, 'd');
  std::filesystem::create_directories(deep);
  std::filesystem::copy_file(name, deep + "/file");
  EXPECT_TRUE(Open(deep + "/file"));
  stream = {};
  // The last try is by the name in the system encoding.
  folder.Write("\x8A.eps", text);
  EXPECT_TRUE(Open(folder / "\xC3\xA4.eps"));
}

TEST_F(StreamFixture, RefusesWhatIsNoReadableFile) {
  ASSERT_EQ(mkfifo((folder / "pipe").c_str(), 0600), 0);
  for (const char* name : {"missing", "pipe", "."}) EXPECT_FALSE(Open(folder / name)) << name;
  EXPECT_FALSE(Open(""));
  EXPECT_FALSE(Open(folder.Write("a", "text") + '\0' + "b"));
}

TEST_F(StreamFixture, ReadsAndWritesTellWhatCame) {
  ASSERT_TRUE(Open(folder.Write("file", "0123456789"), false));
  char buffer[16] = {};
  std::streamsize size = 8;
  EXPECT_EQ(ReadStream(stream, size, buffer), 0);
  size = 8;
  EXPECT_EQ(ReadStream(stream, size, buffer), -1);
  EXPECT_EQ(size, 2);
  EXPECT_TRUE(stream.good()) << "a short read must not keep the reader from seeking";
  stream.seekg(3);
  EXPECT_EQ(stream.GetStreamLength(), 10);
  EXPECT_EQ(stream.get(), '3');

  stream.seekp(2);
  size = 3;
  EXPECT_EQ(WriteStream(stream, size, "abc"), 0);
  stream.LengthenFileStream(8);
  EXPECT_EQ(stream.tellp(), 5);
  EXPECT_EQ(stream.GetStreamLength(), 10) << "a file never gets shorter";
  stream.LengthenFileStream(9000);
  EXPECT_EQ(stream.GetStreamLength(), 9000);
  stream.close();
  const std::string content = folder.Content(folder / "file");
  EXPECT_EQ(content, "01abc56789" + std::string(8990, '\0'));

  ASSERT_TRUE(Open(folder / "file"));
  size = 3;
  EXPECT_EQ(WriteStream(stream, size, "abc"), -1) << "opened for reading only";
  EXPECT_EQ(size, 0);
}

TEST_F(StreamFixture, PathIsSplitAtTheLastSeparator) {
  struct Case {
    const char *path, *folder, *name;  // null if it can't be split
  };
  const Case cases[] = {
      {"/a/b.eps", "/a/", "b.eps"}, {"C:\\a/b\\c.eps", "C:\\a/b\\", "c.eps"},
      {"a\\b/c", "a\\", "b/c"},     {"name", nullptr, nullptr},
      {"/a/", nullptr, nullptr},    {"/a\\", nullptr, nullptr},
      {"", nullptr, nullptr},
  };
  for (const Case& c : cases) {
    std::string outFolder = "-", outName = "-";
    EXPECT_EQ(SplitPath(c.path, outFolder, outName), c.name != nullptr) << c.path;
    EXPECT_EQ(outFolder, c.folder ? c.folder : "-") << c.path;
    EXPECT_EQ(outName, c.name ? c.name : "-") << c.path;
  }
}

TEST_F(StreamFixture, EmbeddedFilesAreFoundAsNamedOrBesideTheFile) {
  const std::string other = folder.Write("other/a.eps", ""), beside = folder.Write("b.eps", "");
  const std::string eps = folder.Write(
      "file.eps", "%%DocumentFiles: " + other + "\r\n%%DocumentFiles:/gone/b.eps\r" + "x%%DocumentFiles:" + other +
                      "\n%%DocumentFiles:b.eps\n" + "%%DocumentFiles: (atend)\n%%DocumentFiles:\n" +
                      std::string(399, 'x') + "%%DocumentFiles:" + other + "\n" + "%%DocumentFiles:" + other);
  Paths paths = {"before"};
  FontParser::ExtractEmbeddedFilesFromFile(eps, paths);
  EXPECT_THAT(paths, testing::ElementsAre("before", other, beside, beside, other));
  paths.clear();
  FontParser::ExtractEmbeddedFilesFromFile(folder / "missing", paths);
  EXPECT_TRUE(paths.empty());
}

}  // namespace
