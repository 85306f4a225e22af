#include "recipes/SingleFolder.h"

#include <string_view>
#include <utility>

#include "recipes/Staging.h"

namespace corvane {
namespace {

struct SingleFolder {
  std::string path;
  std::string_view fileNameWord;
  std::string_view announcement;
};

std::string addSection(const RecipeContext& context, std::string script, const std::string& destination,
                       const SingleFolder& folder) {
  finishFileName(context.record, folder.fileNameWord);
  script += archiveFolder(context, destination, folder.path, folder.announcement);
  return script;
}

}  // namespace

std::string shellScriptForThunderbird(const RecipeContext& context, std::string script,
                                      const std::string& destination) {
  return addSection(context, std::move(script), destination,
                    {.path = context.facts.libraryFolder + "/Thunderbird",
                     .fileNameWord = "Thunderbird",
                     .announcement = R"(echo "Backing up Thunderbird Database...")"});
}

std::string shellScriptForEudora8(const RecipeContext& context, std::string script,
                                  const std::string& destination) {
  return addSection(context, std::move(script), destination,
                    {.path = context.facts.libraryFolder + "/Thunderbird",
                     .fileNameWord = "Eudora8",
                     .announcement = R"(	echo "Backing up Eudora 8 Database...")"});
}

std::string shellScriptForPostbox(const RecipeContext& context, std::string script,
                                  const std::string& destination) {
  return addSection(context, std::move(script), destination,
                    {.path = context.facts.appSupportFolder + "/Postbox",
                     .fileNameWord = "Postbox",
                     .announcement = R"(	echo "Backing up Postbox Database...")"});
}

std::string shellScriptForEudora(const RecipeContext& context, std::string script,
                                 const std::string& destination) {
  return addSection(context, std::move(script), destination,
                    {.path = context.facts.documentsFolder + "/Eudora Folder",
                     .fileNameWord = "Eudora",
                     .announcement = R"(echo "Backing up Eudora Database...")"});
}

}  // namespace corvane
