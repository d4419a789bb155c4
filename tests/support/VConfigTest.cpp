#include "vagent/VConfig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "fakes/FakeHostFacts.h"
#include "fakes/FaultyFileSystem.h"
#include "helpers/FailingAllocation.h"
#include "helpers/LogCapture.h"
#include "helpers/TempDir.h"
#include "os/Facilities.h"
#include "os/FileSystem.h"
#include "os/HostFacts.h"
#include "vagent/VLog.h"

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using vagent::test::LogCapture;
using vagent::test::ScopedAllocationFailure;

namespace {

// A directory that holds the fake executable and the configuration files
// beside it.
class ExecutableDirectory {
public:
    ExecutableDirectory() { host_.executablePath = directory_.LibraryPath() + "host.exe"; }

    // The object takes its directory from the executable at construction.
    VConfig MakeConfig() {
        vagent::os::ScopedFacility<vagent::os::HostFacts> scope(host_);
        return VConfig();
    }

    void Write(const std::string& contents, const std::string& name = "Config.ini") {
        vagent::test::WriteWholeFile(directory_ / name, contents);
    }

    std::string LibraryPath(const std::string& name = "Config.ini") const {
        return directory_.LibraryPath() + name;
    }

private:
    vagent::test::TempDir directory_;
    vagent::test::FakeHostFacts host_;
};

VConfig ConfigWithExecutable(const std::string& executablePath) {
    vagent::test::FakeHostFacts host;
    host.executablePath = executablePath;
    vagent::os::ScopedFacility<vagent::os::HostFacts> scope(host);
    return VConfig();
}

// Every entry as "section|key|value", in list order.
std::vector<std::string> EntriesOf(const VConfig& config) {
    std::vector<std::string> entries;
    for (const CONF_T* entry = config.Entries(); entry != nullptr; entry = entry->next) {
        entries.push_back(std::string(entry->section) + "|" + entry->key + "|" + entry->value);
    }
    return entries;
}

// Reads the file through a look-up and returns its entries.
std::vector<std::string> ParsedEntries(const std::string& contents) {
    ExecutableDirectory directory;
    directory.Write(contents);
    VConfig config = directory.MakeConfig();
    std::string value;
    config.ReadKeyValue("", "", value);
    return EntriesOf(config);
}

std::string Lookup(VConfig& config, const std::string& section, const std::string& key) {
    std::string value = "untouched";
    config.ReadKeyValue(section, key, value);
    return value;
}

}  // namespace

TEST(VConfig, DirectoryIsTheExecutablesWithItsTrailingBackslash) {
    const VConfig config = ConfigWithExecutable("C:\\Program Files\\host\\host.exe");
    EXPECT_EQ(config.GetDirectory(), "C:\\Program Files\\host\\");
}

TEST(VConfig, ExecutablePathWithoutBackslashIsTheWholeDirectory) {
    const VConfig config = ConfigWithExecutable("host.exe");
    EXPECT_EQ(config.GetDirectory(), "host.exe");
}

TEST(VConfig, ExecutablePathIsBoundedTo256CharsBeforeItIsCut) {
    const std::string head = "C:\\" + std::string(250, 'd') + "\\";
    const VConfig config = ConfigWithExecutable(head + std::string(10, 'e') + "\\host.exe");
    EXPECT_EQ(config.GetDirectory(), head);
}

TEST(VConfig, LongExecutablePathWithoutBackslashKeeps256Chars) {
    const VConfig config = ConfigWithExecutable(std::string(300, 'h'));
    EXPECT_EQ(config.GetDirectory(), std::string(256, 'h'));
}

TEST(VConfig, FileNameIsConfigIniByDefault) {
    ExecutableDirectory directory;
    const VConfig config = directory.MakeConfig();
    EXPECT_EQ(config.GetFileName(), "Config.ini");
}

TEST(VConfig, ConstructorDoesNotReadTheFile) {
    LogCapture capture;
    ExecutableDirectory directory;
    const VConfig config = directory.MakeConfig();
    EXPECT_FALSE(config.IsLoaded());
    EXPECT_EQ(config.Entries(), nullptr);
    EXPECT_THAT(capture.Texts(), IsEmpty());
}

TEST(VConfig, IndentedKeyUnderPaddedHeaderLosesBlanksAndComment) {
    EXPECT_THAT(ParsedEntries("[ Net ]\n  Port = 1234 ; comment\n"), ElementsAre("Net|Port|1234"));
}

TEST(VConfig, DoubleSlashStartsACommentInsideAValue) {
    EXPECT_THAT(ParsedEntries("path=a//b\n"), ElementsAre("|path|a"));
}

TEST(VConfig, SemicolonStartsACommentInsideAValue) {
    EXPECT_THAT(ParsedEntries("list=a;b\n"), ElementsAre("|list|a"));
}

TEST(VConfig, CommentedOutLineYieldsNothing) {
    EXPECT_THAT(ParsedEntries("// a=1\n; b=2\nc=3\n"), ElementsAre("|c|3"));
}

TEST(VConfig, HeaderOfOneLetterKeepsThePreviousSection) {
    EXPECT_THAT(ParsedEntries("[Base]\n[A]\nx=1\n"), ElementsAre("Base|x|1"));
}

TEST(VConfig, HeaderOfOneLetterInsideBlanksKeepsThePreviousSection) {
    EXPECT_THAT(ParsedEntries("[Base]\n[ A ]\nx=1\n"), ElementsAre("Base|x|1"));
}

TEST(VConfig, KeyWithEqualsAloneYieldsAnEmptyValue) {
    EXPECT_THAT(ParsedEntries("[Sec]\nkey=\n"), ElementsAre("Sec|key|"));
}

TEST(VConfig, LineBeginningWithEqualsYieldsNothing) {
    EXPECT_THAT(ParsedEntries("=value\nk=v\n"), ElementsAre("|k|v"));
}

TEST(VConfig, LineWithoutEqualsYieldsNothing) {
    EXPECT_THAT(ParsedEntries("just words\nk=v\n"), ElementsAre("|k|v"));
}

TEST(VConfig, HeaderWithEqualsAlsoYieldsAnEntry) {
    EXPECT_THAT(ParsedEntries("[a=b]\nk=v\n"), ElementsAre("a=b|k|v", "a=b|a|b"));
}

TEST(VConfig, EmptyHeaderStartsTheUnnamedSection) {
    EXPECT_THAT(ParsedEntries("[Sec]\n[]\nk=v\n"), ElementsAre("|k|v"));
}

TEST(VConfig, LinesBeforeTheFirstHeaderHaveAnEmptySection) {
    EXPECT_THAT(ParsedEntries("a=1\n[Sec]\nb=2\n"), ElementsAre("Sec|b|2", "|a|1"));
}

TEST(VConfig, ListIsInReverseFileOrder) {
    EXPECT_THAT(ParsedEntries("a=1\nb=2\nc=3\n"), ElementsAre("|c|3", "|b|2", "|a|1"));
}

TEST(VConfig, KeyLosesTrailingBlanksAndValueLeadingBlanks) {
    EXPECT_THAT(ParsedEntries("my key   =   my value\n"), ElementsAre("|my key|my value"));
}

TEST(VConfig, TabsAreNotBlanks) {
    EXPECT_THAT(ParsedEntries("\tkey\t=\tvalue\t\n"), ElementsAre("|\tkey\t|\tvalue\t"));
}

TEST(VConfig, CarriageReturnAndLineFeedEndTheLine) {
    EXPECT_THAT(ParsedEntries("[Sec]\r\na=1\r\nb=2\r\n"), ElementsAre("Sec|b|2", "Sec|a|1"));
}

TEST(VConfig, LoneCarriageReturnStaysInTheLine) {
    EXPECT_THAT(ParsedEntries("a=1\rb=2\n"), ElementsAre("|a|1\rb=2"));
}

TEST(VConfig, LastLineWithoutLineEndIsRead) {
    EXPECT_THAT(ParsedEntries("a=1\nb=2"), ElementsAre("|b|2", "|a|1"));
}

TEST(VConfig, LineLongerThan1023CharsIsReadInPieces) {
    const std::string head = "k=" + std::string(1021, 'x');
    EXPECT_THAT(ParsedEntries(head + "tail=v\n"), ElementsAre("|tail|v", "|k|" + head.substr(2)));
}

TEST(VConfig, ZeroByteEndsTheLine) {
    EXPECT_THAT(ParsedEntries(std::string("a=1\0b=2\nc=3\n", 12)), ElementsAre("|c|3", "|a|1"));
}

TEST(VConfig, EveryTextIsAllocatedToItsLength) {
    ExecutableDirectory directory;
    directory.Write("[Net]\nPort=1234\n");
    VConfig config = directory.MakeConfig();
    std::string value;
    ASSERT_EQ(config.ReadKeyValue("Net", "Port", value), 1);
    const CONF_T* entry = config.Entries();
    ASSERT_NE(entry, nullptr);
    EXPECT_EQ(entry->next, nullptr);
    EXPECT_STREQ(entry->section, "Net");
    EXPECT_STREQ(entry->key, "Port");
    EXPECT_STREQ(entry->value, "1234");
}

TEST(VConfig, FoundKeyReturnsOneAndItsValue) {
    ExecutableDirectory directory;
    directory.Write("[ Net ]\n  Port = 1234 ; comment\n");
    VConfig config = directory.MakeConfig();
    std::string value;
    EXPECT_EQ(config.ReadKeyValue("Net", "Port", value), 1);
    EXPECT_EQ(value, "1234");
    EXPECT_TRUE(config.IsLoaded());
}

TEST(VConfig, UnknownKeyReturnsZeroAndLeavesTheValue) {
    ExecutableDirectory directory;
    directory.Write("[Net]\nPort=1234\n");
    VConfig config = directory.MakeConfig();
    std::string value = "untouched";
    EXPECT_EQ(config.ReadKeyValue("Net", "Host", value), 0);
    EXPECT_EQ(value, "untouched");
}

TEST(VConfig, LatestLineWinsAmongEntriesThatMatchBoth) {
    ExecutableDirectory directory;
    directory.Write("[Sec]\na=1\na=2\n[Tic]\na=3\n");
    VConfig config = directory.MakeConfig();
    EXPECT_EQ(Lookup(config, "Sec", "a"), "2");
}

TEST(VConfig, WithoutAMatchOfBothTheEarliestLineOfTheKeyWins) {
    ExecutableDirectory directory;
    directory.Write("[S1]\na=1\n[S2]\na=2\n");
    VConfig config = directory.MakeConfig();
    std::string value;
    EXPECT_EQ(config.ReadKeyValue("S3", "a", value), 1);
    EXPECT_EQ(value, "1");
}

TEST(VConfig, KeyThatIsAPrefixOfAStoredKeyMatches) {
    ExecutableDirectory directory;
    directory.Write("[Base]\nSSOEnabled=1\n");
    VConfig config = directory.MakeConfig();
    std::string value;
    EXPECT_EQ(config.ReadKeyValue("Base", "SSO", value), 1);
    EXPECT_EQ(value, "1");
}

TEST(VConfig, KeyLongerThanTheStoredKeyDoesNotMatch) {
    ExecutableDirectory directory;
    directory.Write("[Base]\nSSO=1\n");
    VConfig config = directory.MakeConfig();
    std::string value;
    EXPECT_EQ(config.ReadKeyValue("Base", "SSOEnabled", value), 0);
}

TEST(VConfig, SectionThatIsAPrefixOfAStoredSectionMatches) {
    ExecutableDirectory directory;
    directory.Write("[Network]\na=1\n[Other]\na=2\n");
    VConfig config = directory.MakeConfig();
    EXPECT_EQ(Lookup(config, "Net", "a"), "1");
}

TEST(VConfig, KeyAndSectionIgnoreCase) {
    ExecutableDirectory directory;
    directory.Write("[Net]\nPort=1\n[Other]\nPort=2\n");
    VConfig config = directory.MakeConfig();
    EXPECT_EQ(Lookup(config, "nET", "pORT"), "1");
}

TEST(VConfig, EmptyKeyMatchesEveryKey) {
    ExecutableDirectory directory;
    directory.Write("[A]\nx=1\n[B]\ny=2\n");
    VConfig config = directory.MakeConfig();
    EXPECT_EQ(Lookup(config, "A", ""), "1");
}

TEST(VConfig, EmptySectionMatchesEverySection) {
    ExecutableDirectory directory;
    directory.Write("[A]\nPort=1\n[B]\nPort=2\n");
    VConfig config = directory.MakeConfig();
    EXPECT_EQ(Lookup(config, "", "Port"), "2");
}

TEST(VConfig, FileIsReadOnceAndKept) {
    ExecutableDirectory directory;
    directory.Write("a=1\n");
    VConfig config = directory.MakeConfig();
    vagent::test::FaultyFileSystem files;
    vagent::os::ScopedFacility<vagent::os::FileSystem> scope(files);
    EXPECT_EQ(Lookup(config, "", "a"), "1");
    directory.Write("a=2\n");
    EXPECT_EQ(Lookup(config, "", "a"), "1");
    EXPECT_THAT(files.calls, ElementsAre("Exists " + directory.LibraryPath(),
                                         "Open " + directory.LibraryPath() + " rt"));
}

TEST(VConfig, SetConfigFileWithTheSameNameKeepsTheLoadedList) {
    ExecutableDirectory directory;
    directory.Write("a=1\n");
    VConfig config = directory.MakeConfig();
    EXPECT_EQ(Lookup(config, "", "a"), "1");
    directory.Write("a=2\n");
    std::string previous;
    EXPECT_EQ(config.SetConfigFile("Config.ini", &previous), 1);
    EXPECT_EQ(previous, "Config.ini");
    EXPECT_TRUE(config.IsLoaded());
    EXPECT_EQ(Lookup(config, "", "a"), "1");
}

TEST(VConfig, SetConfigFileWithAnotherNameReadsThatFile) {
    ExecutableDirectory directory;
    directory.Write("a=1\n");
    directory.Write("a=2\n", "Other.ini");
    VConfig config = directory.MakeConfig();
    EXPECT_EQ(Lookup(config, "", "a"), "1");
    std::string previous;
    EXPECT_EQ(config.SetConfigFile("Other.ini", &previous), 1);
    EXPECT_EQ(previous, "Config.ini");
    EXPECT_EQ(config.GetFileName(), "Other.ini");
    EXPECT_FALSE(config.IsLoaded());
    EXPECT_EQ(config.Entries(), nullptr);
    EXPECT_EQ(Lookup(config, "", "a"), "2");
}

TEST(VConfig, SetConfigFileComparesNamesWithCase) {
    ExecutableDirectory directory;
    directory.Write("a=1\n");
    VConfig config = directory.MakeConfig();
    EXPECT_EQ(Lookup(config, "", "a"), "1");
    EXPECT_EQ(config.SetConfigFile("config.ini"), 1);
    EXPECT_FALSE(config.IsLoaded());
    EXPECT_EQ(config.GetFileName(), "config.ini");
}

TEST(VConfig, SetConfigFileKeeps256CharsOfTheName) {
    ExecutableDirectory directory;
    VConfig config = directory.MakeConfig();
    config.SetConfigFile(std::string(300, 'n'));
    EXPECT_EQ(config.GetFileName(), std::string(256, 'n'));
}

TEST(VConfig, SetConfigFileMayHandTheOldNameBackIntoTheNewNamesString) {
    ExecutableDirectory directory;
    directory.Write("a=2\n", "Other.ini");
    VConfig config = directory.MakeConfig();
    std::string name = "Other.ini";
    config.SetConfigFile(name, &name);
    EXPECT_EQ(name, "Config.ini");
    EXPECT_EQ(config.GetFileName(), "Other.ini");
    EXPECT_EQ(Lookup(config, "", "a"), "2");
}

TEST(VConfig, MissingFileLogsNotExitWithThePathAndReturnsZero) {
    LogCapture capture;
    ExecutableDirectory directory;
    VConfig config = directory.MakeConfig();
    std::string value = "untouched";
    EXPECT_EQ(config.ReadKeyValue("", "a", value), 0);
    EXPECT_EQ(value, "untouched");
    EXPECT_THAT(capture.Texts(), ElementsAre("File [" + directory.LibraryPath() + "] Not Exit"));
}

TEST(VConfig, UnopenableFileLogsFopenFailedWithThePath) {
    LogCapture capture;
    ExecutableDirectory directory;
    directory.Write("a=1\n");
    VConfig config = directory.MakeConfig();
    // The log opens its own file before no file can be opened any more.
    ASSERT_EQ(capture.Log().OpenLog(), 1);
    vagent::test::FaultyFileSystem files;
    files.failOpen = true;
    vagent::os::ScopedFacility<vagent::os::FileSystem> scope(files);
    std::string value = "untouched";
    EXPECT_EQ(config.ReadKeyValue("", "a", value), 0);
    EXPECT_EQ(value, "untouched");
    EXPECT_THAT(capture.Texts(), ElementsAre("fopen [" + directory.LibraryPath() + "] failed"));
}

TEST(VConfig, FailedReadIsRetriedOnTheNextLookup) {
    ExecutableDirectory directory;
    VConfig config = directory.MakeConfig();
    EXPECT_EQ(Lookup(config, "", "a"), "untouched");
    directory.Write("a=1\n");
    EXPECT_EQ(Lookup(config, "", "a"), "1");
}

TEST(VConfig, EmptyFileCountsAsAFailedRead) {
    ExecutableDirectory directory;
    directory.Write("");
    VConfig config = directory.MakeConfig();
    std::string value;
    EXPECT_EQ(config.ReadKeyValue("", "", value), 0);
    EXPECT_FALSE(config.IsLoaded());
    directory.Write("a=1\n");
    EXPECT_EQ(Lookup(config, "", "a"), "1");
}

TEST(VConfig, FileWithoutKeyLinesCountsAsAFailedRead) {
    ExecutableDirectory directory;
    directory.Write("[Section]\n; nothing here\n");
    VConfig config = directory.MakeConfig();
    std::string value;
    EXPECT_EQ(config.ReadKeyValue("", "", value), 0);
    EXPECT_FALSE(config.IsLoaded());
    EXPECT_EQ(config.Entries(), nullptr);
}

TEST(VConfig, FailedEntryAllocationLogsAndSkipsTheLine) {
    LogCapture capture;
    ExecutableDirectory directory;
    directory.Write("a=1\nb=2\n");
    VConfig config = directory.MakeConfig();
    std::string value;
    {
        ScopedAllocationFailure failure(0, 1);
        EXPECT_EQ(config.ReadKeyValue("", "b", value), 1);
    }
    EXPECT_THAT(EntriesOf(config), ElementsAre("|b|2"));
    EXPECT_THAT(capture.Texts(), ElementsAre("ReadConfig : new CONF_T bytes failed"));
}

TEST(VConfig, FailedSectionAllocationLogsItsSize) {
    LogCapture capture;
    ExecutableDirectory directory;
    directory.Write("[Network]\nPort=123456\n");
    VConfig config = directory.MakeConfig();
    std::string value;
    {
        ScopedAllocationFailure failure(1, 1);
        EXPECT_EQ(config.ReadKeyValue("", "", value), 0);
    }
    EXPECT_EQ(config.Entries(), nullptr);
    EXPECT_THAT(capture.Texts(), ElementsAre("ReadConfig : new [8] bytes failed"));
}

TEST(VConfig, FailedKeyAllocationLogsItsSize) {
    LogCapture capture;
    ExecutableDirectory directory;
    directory.Write("[Network]\nPort=123456\n");
    VConfig config = directory.MakeConfig();
    std::string value;
    {
        ScopedAllocationFailure failure(2, 1);
        EXPECT_EQ(config.ReadKeyValue("", "", value), 0);
    }
    EXPECT_THAT(capture.Texts(), ElementsAre("ReadConfig : new [5] bytes failed"));
}

TEST(VConfig, FailedValueAllocationLogsItsSize) {
    LogCapture capture;
    ExecutableDirectory directory;
    directory.Write("[Network]\nPort=123456\n");
    VConfig config = directory.MakeConfig();
    std::string value;
    {
        ScopedAllocationFailure failure(3, 1);
        EXPECT_EQ(config.ReadKeyValue("", "", value), 0);
    }
    EXPECT_THAT(capture.Texts(), ElementsAre("ReadConfig : new [7] bytes failed"));
}

TEST(VConfig, LineAfterAFailedAllocationIsStillRead) {
    LogCapture capture;
    ExecutableDirectory directory;
    directory.Write("[Network]\nPort=123456\nHost=h\n");
    VConfig config = directory.MakeConfig();
    std::string value;
    {
        ScopedAllocationFailure failure(3, 1);
        EXPECT_EQ(config.ReadKeyValue("", "", value), 1);
    }
    EXPECT_THAT(EntriesOf(config), ElementsAre("Network|Host|h"));
    EXPECT_THAT(capture.Texts(), Contains("ReadConfig : new [7] bytes failed"));
}

TEST(VConfig, CopyHasAListOfItsOwn) {
    ExecutableDirectory directory;
    directory.Write("[Sec]\na=1\nb=2\n", "Other.ini");
    VConfig original = directory.MakeConfig();
    original.SetConfigFile("Other.ini");
    EXPECT_EQ(Lookup(original, "Sec", "a"), "1");
    const VConfig copy(original);
    EXPECT_NE(copy.Entries(), original.Entries());
    EXPECT_THAT(EntriesOf(copy), ElementsAre("Sec|b|2", "Sec|a|1"));
    EXPECT_TRUE(copy.IsLoaded());
    EXPECT_EQ(copy.GetDirectory(), original.GetDirectory());
    EXPECT_EQ(copy.GetFileName(), "Other.ini");
}

TEST(VConfig, AssignmentCopiesTheList) {
    ExecutableDirectory directory;
    directory.Write("[Sec]\na=1\n");
    directory.Write("b=2\n", "Other.ini");
    VConfig source = directory.MakeConfig();
    EXPECT_EQ(Lookup(source, "Sec", "a"), "1");
    VConfig target = directory.MakeConfig();
    target.SetConfigFile("Other.ini");
    EXPECT_EQ(Lookup(target, "", "b"), "2");
    target = source;
    EXPECT_NE(target.Entries(), source.Entries());
    EXPECT_THAT(EntriesOf(target), ElementsAre("Sec|a|1"));
    EXPECT_EQ(target.GetFileName(), "Config.ini");
    EXPECT_TRUE(target.IsLoaded());
}

TEST(VConfig, SelfAssignmentKeepsTheList) {
    ExecutableDirectory directory;
    directory.Write("a=1\n");
    VConfig config = directory.MakeConfig();
    EXPECT_EQ(Lookup(config, "", "a"), "1");
    const VConfig* const before = &config;
    config = *before;
    EXPECT_THAT(EntriesOf(config), ElementsAre("|a|1"));
}

TEST(VConfig, CopyOfAnUnreadObjectIsUnread) {
    ExecutableDirectory directory;
    const VConfig original = directory.MakeConfig();
    const VConfig copy(original);
    EXPECT_FALSE(copy.IsLoaded());
    EXPECT_EQ(copy.Entries(), nullptr);
}

TEST(VConfig, CopyThatCannotAllocateItsListReadsTheFileItself) {
    ExecutableDirectory directory;
    directory.Write("a=1\nb=2\n");
    VConfig original = directory.MakeConfig();
    EXPECT_EQ(Lookup(original, "", "a"), "1");
    for (int allowed = 0; allowed < 8; ++allowed) {
        SCOPED_TRACE(allowed);
        std::optional<VConfig> copy;
        {
            ScopedAllocationFailure failure(allowed, 1);
            copy.emplace(original);
        }
        EXPECT_FALSE(copy->IsLoaded());
        EXPECT_EQ(copy->Entries(), nullptr);
        EXPECT_EQ(Lookup(*copy, "", "b"), "2");
    }
}

TEST(VConfig, AssignmentThatCannotAllocateTheListReadsTheFileItself) {
    ExecutableDirectory directory;
    directory.Write("a=1\nb=2\n");
    VConfig original = directory.MakeConfig();
    EXPECT_EQ(Lookup(original, "", "a"), "1");
    for (int allowed = 0; allowed < 8; ++allowed) {
        SCOPED_TRACE(allowed);
        VConfig target = directory.MakeConfig();
        target.SetConfigFile("Missing.ini");
        {
            ScopedAllocationFailure failure(allowed, 1);
            target = original;
        }
        EXPECT_FALSE(target.IsLoaded());
        EXPECT_EQ(target.GetFileName(), "Config.ini");
        EXPECT_EQ(Lookup(target, "", "b"), "2");
    }
}

TEST(VConfig, KeepsItsDirectoryAndFileNameInFixed256CharacterArrays) {
    // The layout host programs share: the loaded flag, the two arrays, then
    // the head of the entries.
    struct SharedLayout {
        std::int32_t loaded;
        char directory[256];
        char fileName[256];
        CONF_T* entries;
    };
    EXPECT_EQ(sizeof(VConfig), sizeof(SharedLayout));
    EXPECT_EQ(VConfig::kTextCapacity, 256u);
}

TEST(VConfig, FileNameOfExactly256CharsIsKeptWhole) {
    ExecutableDirectory directory;
    VConfig config = directory.MakeConfig();
    std::string previous;
    config.SetConfigFile(std::string(256, 'n'));
    config.SetConfigFile("Other.ini", &previous);
    EXPECT_EQ(previous, std::string(256, 'n'));
}

TEST(VConfig, ParseConfigTextReadsEntriesFromMemoryWithoutTheFile) {
    LogCapture capture;
    ExecutableDirectory directory;
    VConfig config = directory.MakeConfig();
    EXPECT_EQ(config.ParseConfigText("a=1\n  [ Net ]\n  Port = 1234 ; comment\r\n"), 1);
    EXPECT_TRUE(config.IsLoaded());
    EXPECT_THAT(EntriesOf(config), ElementsAre("Net|Port|1234", "|a|1"));
    std::string value;
    EXPECT_EQ(config.ReadKeyValue("Net", "Port", value), 1);
    EXPECT_EQ(value, "1234");
    EXPECT_THAT(capture.Texts(), IsEmpty());
}

TEST(VConfig, ParseConfigTextReplacesTheEntriesReadBefore) {
    ExecutableDirectory directory;
    VConfig config = directory.MakeConfig();
    ASSERT_EQ(config.ParseConfigText("a=1\n"), 1);
    EXPECT_EQ(config.ParseConfigText("b=2\n"), 1);
    EXPECT_THAT(EntriesOf(config), ElementsAre("|b|2"));
    EXPECT_EQ(config.ParseConfigText("no key here\n"), 0);
    EXPECT_FALSE(config.IsLoaded());
    EXPECT_EQ(config.Entries(), nullptr);
}

TEST(VConfig, ParseConfigTextCutsLongLinesIntoPiecesOf1023Bytes) {
    ExecutableDirectory directory;
    VConfig config = directory.MakeConfig();
    const std::string text = std::string(1020, 'k') + "=abcdef\n";
    ASSERT_EQ(config.ParseConfigText(text), 1);
    EXPECT_THAT(EntriesOf(config), ElementsAre("|" + std::string(1020, 'k') + "|ab"));
    EXPECT_EQ(ParsedEntries(text), EntriesOf(config));
}
