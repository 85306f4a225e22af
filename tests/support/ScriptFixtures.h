// A machine, a user and a record to write scripts for.
#pragma once

#include <gtest/gtest.h>
#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "recipes/ClientTable.h"
#include "script/Client.h"
#include "script/Facts.h"
#include "script/FileNaming.h"
#include "script/RunRecord.h"
#include "script/ScriptAssembly.h"

namespace corvane {

inline constexpr const char* kBackupDisk = "/Volumes/Backup Disk";

/// Anna's machine "Studio": macOS 10.8.
inline Facts annasFacts() {
  Facts facts;
  facts.homeDirectory = "/Users/anna";
  facts.libraryFolder = "/Users/anna/Library";
  facts.appSupportFolder = "/Users/anna/Library/Application Support";
  facts.documentsFolder = "/Users/anna/Documents";
  facts.userName = "anna";
  facts.localizedComputerName = "Studio";
  facts.appKitVersion = 1187;
  facts.minorSystemVersion = 8;
  return facts;
}

/// As the preferences leave it when they say nothing about names.
inline RunRecord defaultRecord() {
  RunRecord record;
  record.filenameTemplate = kDefaultFilenameTemplate;
  record.dateFormat = kDefaultDateFormat;
  return record;
}

class FakeScriptHost : public ScriptHost {
 public:
  void measureMailFolder() override { ++measured; }
  [[nodiscard]] bool folderHasEntries(const std::string& path) override {
    return std::count(filled.begin(), filled.end(), path) > 0;
  }
  [[nodiscard]] std::optional<std::string> findOriginalFromAlias(const std::string& path) override {
    const auto alias = originals.find(path);
    return alias == originals.end() ? std::nullopt : std::optional(alias->second);
  }

  int measured = 0;
  std::vector<std::string> filled;               ///< folders that hold something
  std::map<std::string, std::string> originals;  ///< no other path can be resolved
};

/// Assembles scripts for Anna on her machine.
class ScriptTest : public testing::Test {
 protected:
  const std::string& assemble(const ScriptOptions& options) {
    ScriptAssembly(record, facts, clientTable(), host).assemble(options);
    return record.shellScript;
  }

  RunRecord record = defaultRecord();
  Facts facts = annasFacts();
  FakeScriptHost host;
};

}  // namespace corvane
