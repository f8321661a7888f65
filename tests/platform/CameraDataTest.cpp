// A camera's data survive when metadata is written into its picture. The library stores parts of them twice, regroups
// and rounds them.
#include <gmock/gmock.h>

#include <cstdlib>
#include <sstream>

#include "platform/Files.h"
#include "platform/XMP.h"
#include "support/TempFolder.h"

namespace platform {
namespace {

using test_support::TempFolder;

constexpr const char* kNamespace = "http://ns.example.com/test/1.0/";

// One pixel, gray.
const std::string kJPEG =
    std::string("\xFF\xD8\xFF\xE0\0\x10JFIF\0\1\1\0\0\1\0\1\0\0\xFF\xDB\0\x43\0", 25) + std::string(64, '\1') +
    std::string(
        "\xFF\xC0\0\x0B\x08\0\1\0\1\1\1\x11\0\xFF\xC4\0\x14\0\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\3\xFF\xC4\0\x14"
        "\x10\1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\xFF\xDA\0\x08\1\1\0\0\x3F\0\x37\xFF\xD9",
        71);

const std::string kPixels = "\xA1\xB2\xC3\xD4";

// Those four pixels, gray.
std::string TIFF() {
  std::string file = std::string("II*\0\x0C\0\0\0", 8) + kPixels;
  const auto entry = [&](char tag, char type, char value) {
    file += std::string{tag, 1, type, 0, 1, 0, 0, 0, value, 0, 0, 0};
  };
  file += std::string("\x08\0", 2);
  const struct {
    char tag, type, value;
  } entries[] = {{0, 3, 2}, {1, 3, 2}, {2, 3, 8}, {3, 3, 1}, {6, 3, 1}, {17, 4, 8}, {22, 3, 2}, {23, 4, 4}};
  for (const auto& each : entries) entry(each.tag, each.type, each.value);
  return file + std::string(4, '\0');
}

const char* const kCameras[] = {
    "-EXIF:Make=Canon '-EXIF:Model=Canon EOS 5D' -EXIF:ExposureTime=1/125 -EXIF:FNumber=2.8 -EXIF:ISO=400"
    " '-EXIF:DateTimeOriginal=2020:01:02 03:04:05' -EXIF:FocalLength=50 -EXIF:GPSLatitude=48.1 -EXIF:GPSLatitudeRef=N"
    " '-EXIF:Artist=A. Müller' '-EXIF:UserComment=Grüße' -IPTC:Keywords=x -IPTC:Keywords=y",
    "-EXIF:Make=NIKON -EXIF:Model=D850 -EXIF:Flash#=16 -EXIF:ColorSpace#=1 -XMP-exif:ExposureTime=1/3 -XMP-tiff:Make=NIKON"
    " -XMP-exifEX:LensModel=24-70 -XMP-aux:Lens=70-200 -XMP-dc:Title=hi -XMP-xmp:Rating=3",
    "-EXIF:Make=SONY -EXIF:Orientation#=6 -EXIF:ExposureCompensation=-0.333 -EXIF:GPSAltitude=123.456"
    " '-EXIF:ImageDescription=  spaced  ' -XMP-tiff:Orientation#=1 -XMP-exif:GPSAltitude=7"
    " -XMP-exifEX:SerialNumber=99 -XMP-aux:SerialNumber=98",
    "-XMP-tiff:Make=FUJIFILM -XMP-exif:ISO=6400 -XMP-exif:GPSLatitude=1.23456789 -XMP-exif:GPSLongitude=-5"
    " '-XMP-exif:Flash={Fired=True,RedEyeMode=False}' -XMP-exif:DateTimeOriginal=2019:01:01"};

class CameraDataTest : public testing::Test {
 protected:
  CameraDataTest() {
    EXPECT_TRUE(TXMPFiles::Initialize());
    std::string prefix;
    EXPECT_TRUE(TXMPMeta::RegisterNamespace(kNamespace, "tst", &prefix));
  }
  ~CameraDataTest() override { TXMPFiles::Terminate(); }

  // Returns the output of the shell command.
  std::string OutputOf(const std::string& command) const {
    const std::string output = folder_ / "output";
    EXPECT_EQ(std::system(("cd '" + folder_.Path() + "' && " + command + " > '" + output + "' 2>/dev/null").c_str()), 0)
        << command;
    return TempFolder::Content(output);
  }
  // Returns the lines about the picture and the camera, without file offsets and values that the library may change.
  std::vector<std::string> Told() const {
    std::istringstream output(OutputOf(
        "exiftool -a -G1 -s -n --System:all --XMP-x:all --XMP-tst:all --XMP-xmp:MetadataDate "
        "--XMP-exif:GPSLatitude --ApplicationNotes --StripOffsets --IPTCDigest --CurrentIPTCDigest --ExifByteOrder "
        "--Composite:all pictures"));
    std::vector<std::string> lines;
    std::string picture;
    for (std::string line; std::getline(output, line);) {
      if (line.starts_with("=")) picture = line;
      lines.push_back(picture + line);
    }
    return lines;
  }
  static void Put(const std::string& path) {
    TXMPFiles files;
    ASSERT_TRUE(
        files.OpenFile(path.c_str(), kXMP_UnknownFile, kXMPFiles_OpenForUpdate | kXMPFiles_OpenUseSmartHandler));
    TXMPMeta meta;
    files.GetXMP(&meta);
    meta.SetProperty(kNamespace, "name", "value");
    ASSERT_TRUE(files.CanPutXMP(meta));
    files.PutXMP(meta);
    ASSERT_NO_THROW(files.CloseFile()) << path;
  }

  TempFolder folder_;
};

TEST_F(CameraDataTest, StaysAsItWas) {
  const std::string layered = TempFolder::Content(SOURCE_DIR "/samples/no-text.psd");
  const struct {
    const char* extension;
    std::string bytes, pixels;
  } kinds[] = {{".psd", layered, layered.substr(layered.size() - 500)},
               {".jpg", kJPEG, kJPEG.substr(kJPEG.size() - 120)},
               {".tif", TIFF(), kPixels}};
  for (size_t camera = 0; camera < std::size(kCameras); ++camera) {
    std::string names;
    for (const auto& kind : kinds) {
      const std::string name = "pictures/" + std::to_string(camera) + kind.extension;
      folder_.Write(name, kind.bytes);
      names += " " + name;
    }
    OutputOf("exiftool -q -m -overwrite_original " + std::string(kCameras[camera]) + names);
  }
  const std::vector<std::string> told = Told();
  for (const std::string& name : folder_.Names("pictures")) Put(folder_ / ("pictures/" + name));
  // The library may add the data in another form.
  EXPECT_THAT(Told(), testing::IsSupersetOf(told));
  EXPECT_EQ(OutputOf("exiftool -q -b -XMP-tst:Name pictures").size(), 12 * std::string("value").size());
  for (const auto& kind : kinds) {
    for (size_t camera = 0; camera < std::size(kCameras); ++camera) {
      const std::string path = folder_ / ("pictures/" + std::to_string(camera) + kind.extension);
      EXPECT_NE(TempFolder::Content(path).find(kind.pixels), std::string::npos) << path;
    }
  }
}

}  // namespace
}  // namespace platform
