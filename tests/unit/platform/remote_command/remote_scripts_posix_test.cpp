// The scripts under this machine's own shell.
#include "platform/remote_command/remote_scripts.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "support/child_process_posix.h"
#include "support/script_file.h"
#include "support/temporary_folder.h"

namespace Vantix::remote {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

struct Ended {
    int exit_code = -1;
    std::string output;
    std::string errors;
};

class RemoteScriptsInShellTest : public testing::Test {
  protected:
    Ended RunInShell(const std::string& script, const std::string& input = "") const {
        test_support::ChildSetup setup;
        setup.arguments = {"/bin/sh", "-c", script};
        setup.environment = {{"PATH", folder_.Path("bin") + ":/usr/bin:/bin"},
                             {"HOME", folder_.Path("home")},
                             {"TMPDIR", folder_.Path("tmp with blank")}};
        setup.input = input;
        test_support::ChildProcess shell(setup);
        Ended ended;
        ended.exit_code = shell.Wait();
        ended.output = shell.Output();
        ended.errors = shell.Errors();
        return ended;
    }

    void SetUp() override {
        for (const char* const name : {"bin", "home", "tmp with blank"}) {
            fs::create_directory(folder_.Path(name));
        }
    }

    // A tool that tells its version and, otherwise, how it was called.
    void WriteTool(const std::string& path, const std::string& version) const {
        test_support::WriteScript(folder_, path,
                                  "[ \"$1\" = --version ] && { echo 'tarsel " + version +
                                      "'; exit 0; }\n"
                                      "echo \"called with $*\"; cat\n");
    }

    test_support::TemporaryFolder folder_;
};

TEST_F(RemoteScriptsInShellTest, SetupTellsMachineAndMakesAPrivateFolder) {
    const Ended ended = RunInShell(SetupScript());
    const RemoteMachine machine = ParseSetupAnswer(ended.output);
    EXPECT_EQ(ended.exit_code, 0) << ended.errors;
    EXPECT_EQ(machine.system, "Linux");
    EXPECT_FALSE(machine.machine.empty());
    EXPECT_THAT(machine.folder, StartsWith(folder_.Path("tmp with blank/tarsel.")));
    EXPECT_EQ(fs::status(machine.folder).permissions(), fs::perms::owner_all);
    EXPECT_TRUE(fs::is_empty(machine.folder));
}

TEST_F(RemoteScriptsInShellTest, SetupFindsTheInstalledTool) {
    WriteTool("bin/tarsel", "9.8.7");
    const RemoteMachine machine = ParseSetupAnswer(RunInShell(SetupScript()).output);
    EXPECT_EQ(machine.tool, folder_.Path("bin/tarsel"));
    EXPECT_EQ(machine.tool_version, "9.8.7");
}

TEST_F(RemoteScriptsInShellTest, SetupGoesToAnotherFolderWhereTheFirstIsMissing) {
    fs::remove(folder_.Path("tmp with blank"));
    const RemoteMachine machine = ParseSetupAnswer(RunInShell(SetupScript()).output);
    EXPECT_THAT(machine.folder, StartsWith("/var/tmp/tarsel."));
    fs::remove_all(machine.folder);
}

TEST_F(RemoteScriptsInShellTest, SetupPassesOverARelativeTemporaryFolder) {
    const std::string script = "cd '" + folder_.Path("home") + "'; mkdir rel; TMPDIR=rel\n";
    const RemoteMachine machine = ParseSetupAnswer(RunInShell(script + SetupScript()).output);
    EXPECT_THAT(machine.folder, StartsWith("/var/tmp/tarsel."));
    EXPECT_TRUE(fs::is_empty(folder_.Path("home/rel")));
    fs::remove_all(machine.folder);
}

TEST_F(RemoteScriptsInShellTest, SetupThatIsEndedInTheMiddleLeavesNoFolder) {
    test_support::WriteScript(folder_, "bin/chmod", "touch ~/reached; kill -TERM $PPID");
    const Ended ended = RunInShell(SetupScript());
    EXPECT_EQ(ended.exit_code, 1);
    EXPECT_TRUE(fs::exists(folder_.Path("home/reached")));
    EXPECT_TRUE(fs::is_empty(folder_.Path("tmp with blank")));
    EXPECT_EQ(ParseSetupAnswer(ended.output).folder, "");
}

TEST_F(RemoteScriptsInShellTest, PackageWithTopFolderIsUnpacked) {
    const RemoteMachine machine = ParseSetupAnswer(RunInShell(SetupScript()).output);
    fs::create_directories(folder_.Path("stage/tarsel-9.8.7/bin"));
    WriteTool("stage/tarsel-9.8.7/bin/tarsel", "9.8.7");
    ASSERT_EQ(RunInShell("tar -czf '" + PackagePath(machine.folder) + "' -C '" +
                         folder_.Path("stage") + "' tarsel-9.8.7")
                  .exit_code,
              0);
    const Ended ended = RunInShell(UnpackScript(machine.folder));
    const RemoteMachine unpacked = ParseSetupAnswer(ended.output);
    EXPECT_EQ(unpacked.tool, machine.folder + "/tool/tarsel-9.8.7/bin/tarsel") << ended.errors;
    EXPECT_EQ(unpacked.tool_version, "9.8.7");
    EXPECT_FALSE(fs::exists(PackagePath(machine.folder)));
}

TEST_F(RemoteScriptsInShellTest, PackageWithoutTopFolderIsUnpacked) {
    const RemoteMachine machine = ParseSetupAnswer(RunInShell(SetupScript()).output);
    WriteTool("bin/tarsel", "9.8.7");
    RunInShell("tar -czf '" + PackagePath(machine.folder) + "' -C '" + folder_.Path("") + "' bin");
    EXPECT_EQ(ParseSetupAnswer(RunInShell(UnpackScript(machine.folder)).output).tool,
              machine.folder + "/tool/bin/tarsel");
}

TEST_F(RemoteScriptsInShellTest, BrokenPackageFails) {
    const RemoteMachine machine = ParseSetupAnswer(RunInShell(SetupScript()).output);
    RunInShell("echo nonsense >'" + PackagePath(machine.folder) + "'");
    EXPECT_NE(RunInShell(UnpackScript(machine.folder)).exit_code, 0);
}

TEST_F(RemoteScriptsInShellTest, ToolThatDoesNotRunFails) {
    const RemoteMachine machine = ParseSetupAnswer(RunInShell(SetupScript()).output);
    test_support::WriteScript(folder_, "bin/tarsel", "echo 'no library' >&2; exit 127\n");
    RunInShell("tar -czf '" + PackagePath(machine.folder) + "' -C '" + folder_.Path("") + "' bin");
    const Ended ended = RunInShell(UnpackScript(machine.folder));
    EXPECT_EQ(ended.exit_code, 2);
    EXPECT_THAT(ended.errors, HasSubstr("no library"));
}

TEST_F(RemoteScriptsInShellTest, FolderIsRemovedWithEverythingInIt) {
    const RemoteMachine machine = ParseSetupAnswer(RunInShell(SetupScript()).output);
    RunInShell("mkdir '" + machine.folder + "/x'; touch '" + machine.folder + "/x/-y'");
    EXPECT_EQ(RunInShell(RemoveFolderScript(machine.folder)).exit_code, 0);
    EXPECT_FALSE(fs::exists(machine.folder));
    EXPECT_TRUE(fs::exists(folder_.Path("tmp with blank")));
}

TEST_F(RemoteScriptsInShellTest, ListTellsRegularFilesFromLinksAndFolders) {
    const std::vector<std::string> names = {"a.xml", "link.xml", "folder", "missing"};
    folder_.Write("home/a.xml", "x");
    fs::create_symlink("/etc/hostname", folder_.Path("home/link.xml"));
    fs::create_directory(folder_.Path("home/folder"));
    const Ended ended = RunInShell(ListFilesScript(folder_.Path("home"), names));
    const RemoteFiles files = ParseListAnswer(ended.output, names);
    EXPECT_THAT(files.regular, ElementsAre("a.xml"));
    EXPECT_THAT(files.other, ElementsAre("link.xml", "folder"));
}

// ---- the command --------------------------------------------------------------------------------

TEST_F(RemoteScriptsInShellTest, DefaultCommandIsTheLocalScanIntoTheFolder) {
    WriteTool("bin/tarsel", "9.8.7");
    const Ended ended = RunInShell(
        RunScript(" ", folder_.Path("tmp with blank"), {folder_.Path("bin/tarsel"), "", false}));
    EXPECT_EQ(ended.output,
              "called with scan --local --quiet --output " + folder_.Path("tmp with blank") + "\n");
}

TEST_F(RemoteScriptsInShellTest, MarksStandForFolderAndTool) {
    WriteTool("bin/tarsel", "9.8.7");
    const Ended ended =
        RunInShell(RunScript("{tarsel} a {folder}; {tarsel} b; pwd", folder_.Path("tmp with blank"),
                             {folder_.Path("bin/tarsel"), "", false}));
    EXPECT_EQ(ended.output, "called with a " + folder_.Path("tmp with blank") +
                                "\ncalled with b\n" + folder_.Path("tmp with blank") + "\n");
}

TEST_F(RemoteScriptsInShellTest, MarkInsideAValueIsNotReplacedAgain) {
    fs::create_directory(folder_.Path("{tarsel}"));
    const Ended ended = RunInShell(RunScript("echo {folder}", folder_.Path("{tarsel}"), {}));
    EXPECT_EQ(ended.output, folder_.Path("{tarsel}") + "\n");
}

TEST_F(RemoteScriptsInShellTest, ExitCodeIsThatOfTheCommand) {
    EXPECT_EQ(RunInShell(RunScript("exit 7", folder_.Path("home"), {})).exit_code, 7);
}

TEST_F(RemoteScriptsInShellTest, PasswordReachesSudoAloneAndEveryTime) {
    WriteTool("bin/tarsel", "9.8.7");
    test_support::WriteScript(folder_, "bin/sudo",
                              "IFS= read -r password; printf 'sudo read %s\\n' \"$password\"\n"
                              "shift; shift; exec \"$@\"\n");
    const ToolCall call = {folder_.Path("bin/tarsel"), "sudo -S --", true};
    const std::string command = "{tarsel} one; {tarsel} two; cat; env | grep Invented";
    const Ended ended =
        RunInShell(RunScript(command, folder_.Path("home"), call), "Invented \\n'Pass \n");
    EXPECT_EQ(ended.output,
              "sudo read Invented \\n'Pass \ncalled with one\n"
              "sudo read Invented \\n'Pass \ncalled with two\n");
}

TEST_F(RemoteScriptsInShellTest, ToolBehindAnotherProgramDoesNotShowThePassword) {
    const ToolCall call = {folder_.Path("bin/tarsel"), "sudo -S --", true};
    const Ended ended =
        RunInShell(RunScript("env X=1 {tarsel} one", folder_.Path("home"), call), "Invented\n");
    EXPECT_NE(ended.exit_code, 0);
    EXPECT_THAT(ended.output + ended.errors, Not(HasSubstr("Invented")));
}

TEST_F(RemoteScriptsInShellTest, FilesOfRootStayReadableForTheAccount) {
    test_support::WriteScript(folder_, "bin/sudo", "shift; shift; exec \"$@\"\n");
    test_support::WriteScript(folder_, "bin/tarsel", "touch result\n");
    RunInShell(RunScript("{tarsel}", folder_.Path("home"),
                         {folder_.Path("bin/tarsel"), "sudo -n --", false}));
    EXPECT_TRUE(fs::exists(folder_.Path("home/tarsel.log")));
    EXPECT_NE(fs::status(folder_.Path("home/result")).permissions() & fs::perms::others_read,
              fs::perms::none);
}

}  // namespace
}  // namespace Vantix::remote
