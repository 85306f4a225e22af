// Ports that write down, in one list, what a run asks of them; time and output are the test's to give.
#pragma once

#include <cstdio>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "app/AppController.h"

namespace corvane {

class RecordingPorts : public StatusDisplay,
                       public ActivityBar,
                       public StepBar,
                       public ProgressWindow,
                       public Workspace {
 public:
  std::vector<std::string> events;

  void setHeadline(const std::string& text) override { note("headline", text); }
  void setStatus(const std::string& text) override {
    status_ = text;
    note("status", text);
  }
  [[nodiscard]] const std::string& status() const override { return status_; }

  void startActivity() override { note("start activity"); }
  void stopActivity() override { note("stop activity"); }
  void showPercentage() override { note("show percentage"); }
  void setPercentage(double percentage) override { note("percentage", number(percentage)); }
  void setStepMaximum(double maximum) override { note("maximum", number(maximum)); }
  void advanceSteps(double delta) override { note("advance", number(delta)); }

  void open(ScreenPoint point) override {
    opacity_ = 1.0;
    note("open", number(point.x) + "," + number(point.y));
  }
  void showFailure() override { note("show failure"); }
  void awaitDismissal(std::function<void()> /*dismiss*/) override { note("await user"); }
  [[nodiscard]] double opacity() const override { return opacity_; }
  void setOpacity(double opacity) override { opacity_ = opacity; }
  void close() override { note("close"); }

  void launchApplication(const std::string& name) override { note("launch", name); }
  void openFile(const std::string& path, const std::string& application) override {
    note("open " + path.substr(path.find_last_of('/') + 1) + " with", application);
  }
  void noteFileSystemChanged(const std::string& path) override { note("changed", path); }
  void postNotification(const std::string& name) override { note("post", name); }
  [[nodiscard]] std::size_t showAlert(const Alert& alert) override {
    alerts.push_back(alert);
    note("alert", alert.message);
    if (whileAsked) whileAsked();
    return answer;
  }
  void moveToTrash(const std::string& folder) override { note("trash", folder); }
  void terminate(int status) override { note("terminate", std::to_string(status)); }

  std::vector<Alert> alerts;
  std::size_t answer = 1;  ///< which button the user presses
  std::function<void()> whileAsked;

 private:
  static std::string number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
  }
  void note(const std::string& what, const std::string& value = "") {
    events.push_back(value.empty() ? what : what + " " + value);
  }

  std::string status_;
  double opacity_ = 0.0;
};

/// Fires when the test says so, and hands over the bytes that the test gives.
class ManualRunLoop : public RunLoop {
 public:
  [[nodiscard]] std::unique_ptr<Source> repeat(double seconds, std::function<void()> fire) override {
    interval = seconds;
    return install(timer_, std::move(fire));
  }
  [[nodiscard]] std::unique_ptr<Source> read(int /*descriptor*/, ReadHandler handler) override {
    return install(reader_, std::move(handler));
  }

  /// Fires the timer until it is stopped; how often that was, at most `limit`.
  int fireUntilStopped(int limit = 100) {
    int count = 0;
    for (; count < limit; ++count) {
      const auto timer = timer_.lock();
      if (!timer) break;
      (*timer)();
    }
    return count;
  }
  void output(std::string_view bytes) {
    if (const auto reader = reader_.lock()) (*reader)(bytes);
  }
  void endOfOutput() { output(""); }
  [[nodiscard]] bool isTimerRunning() const { return !timer_.expired(); }

  double interval = 0;

 private:
  struct Held : Source {
    std::shared_ptr<void> callback;
  };
  template <typename Callback>
  static std::unique_ptr<Source> install(std::weak_ptr<Callback>& slot, Callback callback) {
    auto source = std::make_unique<Held>();
    auto held = std::make_shared<Callback>(std::move(callback));
    slot = held;
    source->callback = std::move(held);
    return source;
  }

  std::weak_ptr<std::function<void()>> timer_;
  std::weak_ptr<ReadHandler> reader_;
};

/// A machine without aliases, on which the test says what is mounted, and what comes of a mount.
class FakeVolumes : public Volumes {
 public:
  std::set<std::string> mounted;
  MountOutcome outcome;
  std::string appears;  ///< the volume that stands there after a mount

  [[nodiscard]] bool isMounted(const std::string& name) override { return mounted.contains(name); }
  [[nodiscard]] MountOutcome mountServer(const ServerVolume& /*volume*/) override {
    mounted.insert(appears);
    return outcome;
  }

  [[nodiscard]] std::optional<std::string> findOriginalFromAlias(const std::string& /*path*/) override {
    return std::nullopt;
  }
};

/// Property lists by their file's name; what is not there cannot be read.
class MemoryPropertyLists : public PropertyLists {
 public:
  std::map<std::string, PropertyListDictionary> files;
  std::map<std::string, PropertyListDictionary> written;

  [[nodiscard]] std::optional<PropertyListDictionary> readDictionary(const std::string& path,
                                                                     std::string& problem) override {
    const auto file = files.find(path.substr(path.find_last_of('/') + 1));
    if (file != files.end()) return file->second;
    problem = "cannot read " + path;
    return std::nullopt;
  }
  [[nodiscard]] bool writeXml(const std::string& path, const PropertyListDictionary& dictionary,
                              std::string& /*problem*/) override {
    written[path] = dictionary;
    return true;
  }
};

}  // namespace corvane
