// archive-bench FOLDER [SIZE [ROUNDS [SECTION...]]]: what the archives cost, beside other programs that are
// installed, on mail folders that are made in FOLDER unless they are there: 2,000 * SIZE small messages and
// as much in the other kinds. Everything is run in turns, ROUNDS times, and medians are printed; "x" is how
// many times as fast as the first of them, and the last number is the size beside the first's. SECTION: once,
// twice (as the backup of Apple Mail archives), engine (that whole backup, with the other programs in the
// place of ditto), cold (with an empty cache, for the superuser), growth.

#include <sys/stat.h>
#include <unistd.h>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "bench/Measure.h"

namespace corvane::bench {
namespace {

struct Kind {
  const char* name;
  int messages;  // for a size of 1
};

constexpr Kind kKinds[] = {{"small", 2000}, {"mixed", 500}, {"large", 1500}};

struct Program {
  const char* name;
  const char* command;  // is to be there
  const char* line;     // with %t for the tree and %a for the archive
};

constexpr Program kPrograms[] = {{"zip -6", "zip", "(cd %t && zip -6 -q -r %a .)"},
                                 {"ditto", DITTO_PATH, DITTO_PATH " -ck %t %a"},
                                 {"ditto, one thread", DITTO_PATH, DITTO_PATH " -ck --threads 1 %t %a"},
                                 {"bsdtar", "bsdtar", "bsdtar --format zip -cf %a -C %t ."},
                                 {"7z -tzip", "7z", "(cd %t && 7z a -tzip -bd %a . >/dev/null)"}};

// Both are paths, quoted.
std::string filled(std::string line, const std::string& tree, const std::string& archive) {
  const auto put = [&line](const std::string& mark, const std::string& path) {
    const auto at = line.find(mark);
    if (at != std::string::npos) line.replace(at, mark.size(), path);
  };
  put("%t", tree);
  put("%a", archive);
  return line;
}

std::string quoted(const std::string& path) { return "'" + path + "'"; }

class Bench {
 public:
  Bench(std::string folder, int size, int rounds)
      : folder_(std::move(folder)), size_(size), rounds_(rounds), product_(folder_ + "/product.zip") {}

  void once() const;
  void twice() const;
  void engine() const;
  void cold() const;
  void growth() const;

 private:
  [[nodiscard]] std::string tree(const Kind& kind) const;
  [[nodiscard]] static std::vector<Contestant> contestants(const std::string& tree,
                                                           const std::string& product);
  void grow(const char* what, const std::string& make, const std::vector<long>& sizes) const;

  std::string folder_;
  int size_;
  int rounds_;
  std::string product_;
};

std::string Bench::tree(const Kind& kind) const {
  std::string path = folder_ + "/" + kind.name + std::to_string(size_);
  if (::access(path.c_str(), F_OK) != 0) {
    const Cost cost =
        run("'" MAKER_PATH "' '" + path + "' " + std::to_string(kind.messages * size_) + " 1 " + kind.name,
            product_);
    if (!cost.succeeded) std::exit(EXIT_FAILURE);
  }
  static_cast<void>(run("find '" + path + "' -type f -exec cat {} + >/dev/null", product_));
  return path;
}

std::vector<Contestant> Bench::contestants(const std::string& tree, const std::string& product) {
  std::vector<Contestant> found;
  for (const Program& program : kPrograms) {
    const std::string look = std::string("command -v '") + program.command + "' >/dev/null";
    if (run(look, product).succeeded)
      found.push_back({program.name, filled(program.line, tree, product), {}});
  }
  return found;
}

void Bench::once() const {
  for (const Kind& kind : kKinds) {
    const std::string path = tree(kind);
    std::printf("%s, one archive:\n", kind.name);
    compare(contestants(quoted(path), quoted(product_)), product_, rounds_);
  }
}

// The folder into an archive, that one's folder into the next.
void Bench::twice() const {
  for (const Kind& kind : kKinds) {
    const std::string stage = folder_ + "/stage";
    auto both = contestants(quoted(tree(kind)), quoted(stage + "/Mail/Mail.zip"));
    const auto second = contestants(quoted(stage), quoted(product_));
    for (std::size_t i = 0; i < both.size(); ++i) {
      both[i].line = "rm -rf '" + stage + "'; mkdir -p '" + stage + "/Mail' && " + both[i].line + " && " +
                     second[i].line;
    }
    std::printf("%s, an archive in an archive:\n", kind.name);
    compare(both, product_, rounds_);
  }
}

void Bench::engine() const {
  const std::string home = folder_ + "/home";
  for (const Kind& kind : kKinds) {
    const Cost copied = run("rm -rf '" + home + "'; mkdir -p '" + home + "/Library' && cp -R '" + tree(kind) +
                                "' '" + home + "/Library/Mail'",
                            product_);
    if (!copied.succeeded) std::exit(EXIT_FAILURE);
    auto all = contestants("%t", "%a");
    for (Contestant& contestant : all) {
      contestant.line =
          "'" ENGINE_RUN "' '" ENGINE_PATH "' '" + home + "' '" + product_ + "' '" + contestant.line + "'";
    }
    std::printf("%s, a run of the engine:\n", kind.name);
    compare(all, product_, rounds_);
  }
  static_cast<void>(run("rm -rf '" + home + "'", product_));
}

void Bench::cold() const {
  if (::access("/proc/sys/vm/drop_caches", W_OK) != 0) {
    std::printf("cold cache: only the superuser can empty it\n");
    return;
  }
  const std::string path = tree(kKinds[0]);
  const std::string copy = folder_ + "/copy";
  auto all = contestants(quoted(path), quoted(product_));
  all.insert(all.begin(), {"cp -r", "cp -r '" + path + "' '" + copy + "'", {}});
  all.insert(all.begin(), all.front());
  all.front().name += ", not flushed";
  for (std::size_t i = 1; i < all.size(); ++i) all[i].line += " && sync -f '" + folder_ + "'";
  std::printf("%s, with an empty cache:\n", kKinds[0].name);
  // What was copied is removed between, so that each round makes it anew.
  const Contestant removal{"(its removal)", "rm -rf '" + copy + "'", {}};
  all.insert(all.begin() + 1, removal);
  all.insert(all.begin() + 3, removal);
  compare(all, product_, rounds_, Cache::cold);
}

void Bench::grow(const char* what, const std::string& make, const std::vector<long>& sizes) const {
  const std::string path = folder_ + "/grown";
  const std::string remake = "rm -rf '" + path + "'; mkdir '" + path + "' && cd '" + path + "' && ";
  for (const long size : sizes) {
    std::string line = make;
    line.replace(line.find("%n"), 2, std::to_string(size));
    const Cost made = run(remake + line, product_);
    if (!made.succeeded) std::exit(EXIT_FAILURE);
    const Cost cost = run("'" DITTO_PATH "' -ck '" + path + "' '" + product_ + "'", product_);
    std::printf("  %8ld %s %8.2f s   cpu %8.2f s   %6.1f MiB   %9.2f MB%s\n", size, what, cost.wall, cost.cpu,
                cost.memory, cost.size, cost.succeeded ? "" : "   failed");
    std::fflush(stdout);
  }
  static_cast<void>(run("rm -rf '" + path + "'", product_));
}

void Bench::growth() const {
  std::printf("growth:\n");
  // A thousand files of some 40 bytes a folder.
  grow("thousand files",
       "for i in $(seq %n); do mkdir $i; seq -f \"$i, message %.0f, some forty bytes long\" 1000 |"
       " (cd $i && split -l 1 -a 3 -d - message-number-); done",
       {125, 250, 500, 1000});
  grow("MB in one file", "truncate -s %nMB file", {1250, 2500, 5000, 10000});
}

}  // namespace
}  // namespace corvane::bench

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: archive-bench FOLDER [SIZE [ROUNDS [once|twice|engine|cold|growth...]]]\n");
    return EXIT_FAILURE;
  }
  const int size = argc > 2 ? std::atoi(argv[2]) : 10;
  const int rounds = argc > 3 ? std::atoi(argv[3]) : 5;
  std::vector<std::string> sections(argv + std::min(argc, 4), argv + argc);
  if (sections.empty()) sections = {"once", "twice", "engine", "cold", "growth"};
  ::mkdir(argv[1], S_IRWXU);
  char* const folder = ::realpath(argv[1], nullptr);
  if (!folder || size < 1 || rounds < 1) return EXIT_FAILURE;
  const corvane::bench::Bench bench(folder, size, rounds);
  std::free(folder);
  const auto isWanted = [&](const char* name) {
    return std::find(sections.begin(), sections.end(), name) != sections.end();
  };
  if (isWanted("once")) bench.once();
  if (isWanted("twice")) bench.twice();
  if (isWanted("engine")) bench.engine();
  if (isWanted("cold")) bench.cold();
  if (isWanted("growth")) bench.growth();
  return EXIT_SUCCESS;
}
