// A PDF file with a classic cross-reference table, made from the texts of its objects.
#pragma once

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace test_support {

// Object numbers, with the text between "obj" and "endobj". Object 1 is the catalog.
using PDFObjects = std::map<int, std::string>;

class PDFFile {
 public:
  explicit PDFFile(const std::string& header = "%PDF-1.4\n") : bytes_(header), start_(header.find("%PDF")) {}

  // Appends objects, their cross-reference table and a trailer. The present content becomes the previous section.
  PDFFile& Add(const PDFObjects& objects, const std::string& trailer = "") {
    std::map<int, size_t> offsets;
    for (const auto& [number, text] : objects) {
      offsets[number] = Offset();
      bytes_ += std::to_string(number) + " 0 obj\n" + text + "\nendobj\n";
    }
    const size_t table = Offset();
    bytes_ += "xref\n";
    for (const auto& [number, offset] : offsets) {
      char line[64];
      std::snprintf(line, sizeof line, "%d 1\n%010zu 00000 n \n", number, offset);
      bytes_ += line;
    }
    bytes_ += "trailer\n<< /Root 1 0 R " + trailer;
    if (hasTable_) bytes_ += " /Prev " + std::to_string(table_);
    bytes_ += " >>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
    table_ = table;
    hasTable_ = true;
    return *this;
  }
  size_t Table() const { return table_; }
  const std::string& Bytes() const { return bytes_; }

 private:
  size_t Offset() const { return bytes_.size() - start_; }

  std::string bytes_;
  size_t start_, table_ = 0;
  bool hasTable_ = false;
};

// Returns the objects of a document with one page, whose dictionary contains this.
inline PDFObjects OnePage(const std::string& page, PDFObjects others = {}) {
  others.insert({{1, "<< /Type /Catalog /Pages 2 0 R >>"},
                 {2, "<< /Type /Pages /Kids [3 0 R] /Count 1 >>"},
                 {3, "<< /Type /Page /Parent 2 0 R " + page + " >>"}});
  return others;
}
inline std::string Font(const std::string& name, const std::string& more = "") {
  return "<< /Type /Font /Subtype /Type1 /BaseFont /" + name + " " + more + " >>";
}
inline std::string Stream(const std::string& bytes, const std::string& more = "") {
  return "<< /Length " + std::to_string(bytes.size()) + " " + more + " >>\nstream\n" + bytes + "\nendstream";
}

}  // namespace test_support
