// Processes that read documents: their order and their ends.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mman.h>
#include <unistd.h>

#include <memory>

#include "docfonts/ReaderPool.h"
#include "platform/ChildLimits.h"

namespace {

using docfonts::Report;
using testing::ElementsAre;

std::vector<Report> ReadAll(docfonts::ReaderPool& pool, const std::vector<std::string>& paths) {
  std::vector<Report> reports;
  size_t at = 0;
  pool.Run([&] { return at < paths.size() ? std::optional(paths[at++]) : std::nullopt; },
           [&](Report report) {
             reports.push_back(std::move(report));
             return true;
           });
  return reports;
}

// The path of a document says what happens when it is read.
Report Obey(const std::string& path) {
  if (path == "crash") {
    signal(SIGSEGV, SIG_DFL);  // sanitizers have a handler of their own
    raise(SIGSEGV);
  }
  if (path == "end") _exit(7);
  if (path == "wait") pause();
  if (path == "loop") {
    for (volatile bool isEndless = true; isEndless;) {
    }
  }
  if (path == "grow") {
    for (std::vector<std::unique_ptr<char[]>> kept;;) kept.push_back(std::make_unique<char[]>(size_t{1} << 20));
  }
  Report report;
  report.fonts.resize(1);
  report.fonts[0].name = path;
  report.fonts[0].found = {"scan"};
  return report;
}

TEST(ReaderPool, GivesReportsInTheOrderOfThePaths) {
  std::vector<std::string> paths;
  paths.reserve(200);
  for (int i = 0; i < 200; ++i) paths.push_back("path " + std::to_string(i));
  docfonts::ReaderPool pool(3, Obey);
  const std::vector<Report> reports = ReadAll(pool, paths);
  ASSERT_EQ(reports.size(), paths.size());
  for (size_t i = 0; i < paths.size(); ++i) {
    EXPECT_EQ(reports[i].file, paths[i]);
    EXPECT_EQ(reports[i].fonts.at(0).name, paths[i]);
  }
}

TEST(ReaderPool, WhatEndsAReaderCostsOneDocument) {
  const struct {
    const char *path, *problem;
    bool needsLimit;
  } kRows[] = {
      {"crash", "its reader crashed: Segmentation fault", false},
      {"end", "its reader ended with status 7", false},
      {"loop", "reading it takes more than 1 s of processor time", false},
      {"grow", "reading it needs more than 256 MiB of memory", true},
  };
  for (const auto& row : kRows) {
    if (row.needsLimit && platform::kIsSanitized) continue;
    // On a busy machine a second of processor time takes long.
    docfonts::ReaderPool pool(2, Obey, {.memory = uint64_t{256} << 20, .seconds = 0, .patience = 1000});
    const std::vector<Report> reports = ReadAll(pool, {"before", row.path, "behind"});
    ASSERT_EQ(reports.size(), 3u) << row.path;
    EXPECT_EQ(reports[0].fonts.size(), 1u);
    EXPECT_THAT(reports[1].problems, ElementsAre(row.problem));
    EXPECT_EQ(reports[2].fonts.size(), 1u);
    EXPECT_TRUE(reports[2].problems.empty());
  }
  docfonts::ReaderPool impatient(1, Obey, {.patience = 0});
  EXPECT_THAT(ReadAll(impatient, {"wait"})[0].problems, ElementsAre("reading it takes too long"));
}

}  // namespace
