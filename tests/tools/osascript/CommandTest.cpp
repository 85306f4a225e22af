// The command itself, as a script meets it, with real programs and windows.
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>
#include <optional>

#include "process/ChildProcess.h"
#include "process/Files.h"
#include "process/RunTool.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/VirtualDisplay.h"
#include "tests/support/WaitFor.h"
#include "tools/osascript/Names.h"

// After the test framework, whose names the window system's macros would take.
#include <X11/Xlib.h>
#include <X11/Xutil.h>

namespace corvane {
namespace {

using osascript::lowerCase;
using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

// Runs the command with folders and programs of its own, without a display unless the test sets one.
class CommandTest : public testing::Test {
 protected:
  CommandTest() {
    set("HOME", scratch_.path());
    set("PATH", scratch_.path("bin:/usr/bin:/bin"));
    set("XDG_DATA_HOME", scratch_.path("data"));
    set("XDG_DATA_DIRS", scratch_.path("none"));
    set("DISPLAY", "");
  }
  void set(const char* name, const std::string& value) { setVariable(environment_, name, value); }

  ToolResult run(const std::vector<std::string>& lines, Capture capture = Capture::outputAndErrors) {
    LaunchCommand command{OSASCRIPT_PATH, {"osascript"}, environment_};
    for (const auto& line : lines) command.arguments.insert(command.arguments.end(), {"-e", line});
    return runTool(command, capture);
  }
  ToolResult tell(const std::string& name, const std::string& statement) {
    return run({"tell application \"" + name + "\"", statement, "end tell"});
  }

  ScratchFolder scratch_;
  // Names that no other test uses at the same time. The system keeps only 15 letters of the first.
  const std::string own_ = scratch_.path().substr(scratch_.path().size() - 6);
  const std::string standIn_ = "Corvane Stand-In " + own_;
  std::vector<std::string> environment_ = currentEnvironment();
};

// What the system tells of a process in its file `name`.
std::string systemFile(pid_t pid, const std::string& name) {
  return readTestFile("/proc/" + std::to_string(pid) + "/" + name);
}

// A process that bears a given name and does nothing for a while.
class StandIn {
 public:
  // `beginning` is what its arguments begin with once it has started.
  StandIn(const std::vector<std::string>& command, const std::string& beginning) {
    Pipe unread;
    pid_ = spawn({command.front(), command, currentEnvironment()}, unread.writeEnd).pid;
    process_ = std::make_unique<ChildProcess>(pid_);
    EXPECT_TRUE(waitFor([&] { return systemFile(pid_, "cmdline").starts_with(beginning); }));
  }
  // A program of that name and no other purpose.
  StandIn(const ScratchFolder& folder, const std::string& name)
      : StandIn({copyOf("/bin/sleep", folder, name), "30"}, folder.path()) {}
  [[nodiscard]] static std::string copyOf(const std::string& program, const ScratchFolder& folder,
                                          const std::string& name) {
    return folder.write(name, readTestFile(program), 0755);
  }
  [[nodiscard]] pid_t pid() const { return pid_; }

  // By what it ended: a request of somebody else, or, when there was none, ours. Of signals that wait
  // together the one with the smaller number is delivered first, so that theirs never goes unseen.
  [[nodiscard]] int endingSignal() {
    static_assert(SIGVTALRM > SIGTERM);
    ::kill(pid_, SIGVTALRM);
    return process_->wait() - 128;
  }

 private:
  pid_t pid_;
  std::unique_ptr<ChildProcess> process_;
};

TEST_F(CommandTest, QuitsProcessesOfExactlyThatName) {
  const std::string script = scratch_.writeScript("scripts/" + standIn_, "sleep 30 & wait\n");
  const std::string shell = StandIn::copyOf("/bin/sh", scratch_, "shells/" + standIn_);
  StandIn program(scratch_, standIn_);
  StandIn sameName(scratch_, "corvanestandin" + own_);
  StandIn interpreted({script}, "/bin/sh");
  StandIn renamed({shell, "-c", "printf other >/proc/$$/comm; sleep 30 & wait"}, shell);
  ASSERT_TRUE(waitFor([&] { return systemFile(renamed.pid(), "comm") == "other\n"; }));
  StandIn longer(scratch_, standIn_ + " Sync");
  StandIn shorter(scratch_, "Corvane Stand-I");
  std::optional<StandIn> anothers;  // which only root can start
  ::chmod(scratch_.path().c_str(), 0755);
  const std::string sleep = scratch_.path(standIn_);
  if (::getuid() == 0)
    anothers.emplace(
        std::vector<std::string>{"/usr/bin/setpriv", "--reuid=65534", "--clear-groups", sleep, "30"}, sleep);
  const auto result = tell("CORVANE stand-in-" + own_, "quit");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(result.output, "");
  for (auto* quit : {&program, &sameName, &interpreted, &renamed}) EXPECT_EQ(quit->endingSignal(), SIGTERM);
  for (auto* const spared : {&longer, &shorter}) EXPECT_EQ(spared->endingSignal(), SIGVTALRM);
  EXPECT_TRUE(!anothers || anothers->endingSignal() == SIGVTALRM);
}

TEST_F(CommandTest, SparesThoseThatStartedIt) {
  const std::string parent =
      scratch_.writeScript(standIn_, std::string(OSASCRIPT_PATH) + " -e 'tell application \"" + standIn_ +
                                         "\" to quit' 2>&1\necho status $?\n");
  EXPECT_THAT(runTool({parent, {parent}, environment_}).output,
              AllOf(HasSubstr("(-1728)"), EndsWith("status 1\n")));
}

TEST_F(CommandTest, ReportsFailuresOnStandardError) {
  scratch_.writeScript("bin/idle-mail", "");
  const std::string none = "execution error: Can’t get application ";
  const std::string refused = "execution error: Idle Mail got an error: ";
  const std::pair<std::vector<std::string>, std::string> cases[] = {
      {{"tell application \"No \\\"Mail\\\"\" to activate"},
       "34:42: " + none + "\"No \\\"Mail\\\"\". (-1728)\n"},
      {{"tell application \"No\"", "quit", "end tell"}, "22:26: " + none + "\"No\". (-1728)\n"},
      {{"tell application \"Idle Mail\" to set working offline to true"},
       "32:59: " + refused + "Application isn’t running. (-600)\n"},
      {{"tell application \"Idle Mail\" to shut down"},
       "32:41: " + refused + "Can’t continue shut down. (-1708)\n"},
      {{"tell application \"Idle Mail\" to quit"}, ""},
      {{"tell application \"Idle Mail"},
       "17:27: syntax error: Expected “\"” but found end of line. (-2741)\n"},
      {{}, "usage: osascript -e statement [-e statement ...]\n"}};
  for (const auto& [lines, output] : cases) {
    const auto result = run(lines);
    EXPECT_EQ(result.output, output);
    EXPECT_EQ(result.status, output.empty() ? 0 : 1);
    EXPECT_EQ(run(lines, Capture::outputOnly).output, "");
  }
}

// Starting it a second time would fail, so that success tells that nothing was started.
TEST_F(CommandTest, NeitherStartsNorSetsOfflineWhatRuns) {
  scratch_.write("bin/corvane-stand-in-" + lowerCase(own_), "\177ELF", 0755);
  {
    const StandIn running(scratch_, standIn_);
    EXPECT_EQ(tell(standIn_, "activate").status, 0);
    EXPECT_THAT(tell(standIn_, "set working offline to true").output,
                HasSubstr("Can’t set working offline to true. (-10006)"));
  }
  EXPECT_THAT(tell(standIn_, "activate").output,
              AllOf(HasSubstr("cannot start " + scratch_.path()), HasSubstr("(-10810)")));
}

// The application writes down how it was started, and stays.
TEST_F(CommandTest, StartsWhatOutlivesItInTheRightFolder) {
  const std::string made = scratch_.path("made");
  const std::string program =
      scratch_.writeScript("programs/an agent", R"(printf '%s\n' $$ "$PWD" `umask` "$@" >"$HOME/partly"
mv "$HOME/partly" "$HOME/started"
sleep 30 & wait
)");
  const std::string agent = "$(touch " + made + ")" + own_;
  set("BASHOPTS", "xpg_echo");
  set("TIME_STYLE", "+%m");
  set("CORVANE_UMASK", "037");
  for (const std::string folder : {"", "/programs"}) {
    scratch_.write("data/applications/agent.desktop",
                   "[Desktop Entry]\nType=Application\nName=" + agent +
                       "\nPath=" + (folder.empty() ? "" : scratch_.path() + folder) + "\nExec=\"" + program +
                       "\" %U --mail \"two words\"\n");
    const auto result = tell(agent, "activate");  // returns once nobody holds its output any more
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, "");
    ASSERT_TRUE(waitFor([&] { return fileExists(scratch_.path("started")); }));
    const std::string started = scratch_.read("started");
    const pid_t pid = std::atoi(started.c_str());
    EXPECT_EQ(started, std::to_string(pid) + "\n" + scratch_.path() + folder + "\n0037\n--mail\ntwo words\n");
    EXPECT_EQ(::getsid(pid), pid);
    for (const char* stream : {"/fd/0", "/fd/1", "/fd/2"})
      EXPECT_EQ(std::filesystem::read_symlink("/proc/" + std::to_string(pid) + stream), "/dev/null");
    EXPECT_THAT(systemFile(pid, "environ"),
                AllOf(HasSubstr("HOME="), Not(HasSubstr("BASHOPTS=")), Not(HasSubstr("TIME_STYLE=")),
                      Not(HasSubstr("CORVANE_UMASK="))));
    if (pid > 1) ::kill(-pid, SIGKILL);
    std::remove(scratch_.path("started").c_str());
  }
  EXPECT_FALSE(fileExists(made));
}

TEST_F(CommandTest, AsksWindowsToCloseAndEndsOnlyWhatHasNone) {
  const VirtualDisplay screen;
  ASSERT_EQ(screen.problem(), "");
  set("DISPLAY", screen.name());
  const std::unique_ptr<::Display, int (*)(::Display*)> owned(XOpenDisplay(screen.name().c_str()),
                                                              XCloseDisplay);
  ::Display* const display = owned.get();
  const Window root = DefaultRootWindow(display);
  XSelectInput(display, root, SubstructureNotifyMask);
  const auto atom = [&](const char* name) { return XInternAtom(display, name, False); };
  constexpr long kIconic = 3;
  const struct {
    const char *description, *suffix;  // of its class, after the name of the application
    bool namesProcess, isShown, isMinimized, canClose, isAsked;
    bool isRaised;  // when the process that it names is gone
  } rows[] = {{"by its class", "", false, true, false, true, true, true},
              {"by its process", " Other", true, true, false, true, true, false},
              {"minimized", "", false, false, true, true, true, true},
              {"somebody else's", " Sync", false, true, false, true, false, false},
              {"never shown", "", true, false, false, true, false, false},
              {"cannot be asked", "", true, true, false, false, false, true}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.description);
    StandIn owner(scratch_, standIn_);
    const Window window = XCreateSimpleWindow(display, root, 0, 0, 20, 20, 0, 0, 0);
    const auto setNumber = [&](const char* property, long value) {
      XChangeProperty(display, window, atom(property), atom("CARDINAL"), 32, PropModeReplace,
                      reinterpret_cast<const unsigned char*>(&value), 1);
    };
    std::string name = standIn_, type = name + row.suffix;
    XClassHint hint{name.data(), type.data()};
    XSetClassHint(display, window, &hint);
    if (row.namesProcess) setNumber("_NET_WM_PID", owner.pid());
    if (row.isMinimized) setNumber("WM_STATE", kIconic);
    Atom close = atom("WM_DELETE_WINDOW");
    if (row.canClose) XSetWMProtocols(display, window, &close, 1);
    if (row.isShown) XMapWindow(display, window);
    XSync(display, False);
    // Takes the messages that have arrived; true when such a one is among them.
    const auto hasReceived = [&](const char* protocol, Atom first) {
      XSync(display, False);
      bool found = false;
      for (XEvent event; XCheckTypedEvent(display, ClientMessage, &event);) {
        const auto& message = event.xclient;
        found |= message.window == window && message.message_type == atom(protocol) &&
                 (first == None || message.data.l[0] == static_cast<long>(first));
      }
      return found;
    };
    EXPECT_EQ(tell(standIn_, "quit").status, 0);
    EXPECT_EQ(hasReceived("WM_PROTOCOLS", close), row.isAsked);
    EXPECT_EQ(owner.endingSignal(), row.isAsked ? SIGVTALRM : SIGTERM);
    EXPECT_EQ(tell(standIn_, "activate").status, row.isRaised ? 0 : 1);
    EXPECT_EQ(hasReceived("_NET_ACTIVE_WINDOW", None), row.isRaised);
    XDestroyWindow(display, window);
  }
}

}  // namespace
}  // namespace corvane
