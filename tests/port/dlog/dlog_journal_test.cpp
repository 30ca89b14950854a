// A datagram socket stands for the journal, at the journal's own path: the test has the folder /run
// for itself in a mount namespace of its own.

#include "port/dlog/LogChild.h"
#include "support/Allocations.h"
#include <dlog.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <gmock/gmock.h>
#include <map>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

namespace
{
using testing::AllOf;
using testing::Contains;
using testing::EndsWith;
using testing::Key;
using testing::Not;
using testing::Pair;
using testing::UnorderedElementsAre;

using Fields = std::multimap<std::string, std::string>;

constexpr sockaddr_un kAddress = {AF_UNIX, "/run/systemd/journal/socket"};
constexpr int kAllSeals = F_SEAL_SEAL | F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;

bool WriteFile(const char* path, const std::string& text)
{
    const int file = open(path, O_WRONLY | O_CLOEXEC);
    const ssize_t written = write(file, text.data(), text.size());
    close(file);
    return written == static_cast<ssize_t>(text.size());
}

// Who is not root may mount where a user namespace makes it root.
bool EnterNamespace()
{
    const std::string user = std::to_string(geteuid());
    const std::string group = std::to_string(getegid());
    return unshare(CLONE_NEWNS) == 0 ||
           (unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0 &&
            WriteFile("/proc/self/setgroups", "deny") &&
            WriteFile("/proc/self/uid_map", user + " " + user + " 1") &&
            WriteFile("/proc/self/gid_map", group + " " + group + " 1"));
}

// Returns why the process cannot have a /run of its own; empty: it has.
std::string TakeRun()
{
    if (!EnterNamespace() || mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        mount("run", "/run", "tmpfs", 0, nullptr) != 0 || mkdir("/run/systemd", 0755) != 0 ||
        mkdir("/run/systemd/journal", 0755) != 0)
        return std::string("the test cannot mount a /run of its own here: ") + std::strerror(errno);
    return "";
}

// The eight bytes of a length, the lowest first.
size_t ReadLength(const std::string& bytes)
{
    size_t length = 0;
    for (size_t i = 8; i-- > 0;)
        length = length << 8 | static_cast<unsigned char>(bytes[i]);
    return length;
}

// Both forms of a field: NAME=value, or NAME, the value's length and the value.
Fields Decode(const std::string& entry)
{
    Fields fields;
    for (size_t at = 0; at < entry.size();)
    {
        const size_t nameEnd = entry.find_first_of("=\n", at);
        if (nameEnd == std::string::npos)
            return {{"broken", entry.substr(at)}};
        const bool isBinary = entry[nameEnd] == '\n';
        const size_t start = nameEnd + (isBinary ? 9 : 1);
        const size_t end =
            isBinary ? start + ReadLength(entry.substr(nameEnd + 1, 8)) : entry.find('\n', start);
        if (end >= entry.size() || entry[end] != '\n')
            return {{"broken", entry.substr(at)}};
        fields.emplace(entry.substr(at, nameEnd - at), entry.substr(start, end - start));
        at = end + 1;
    }
    return fields;
}

std::string ReadSealedFile(int file)
{
    EXPECT_EQ(fcntl(file, F_GET_SEALS), kAllSeals);
    lseek(file, 0, SEEK_SET);
    const std::string text = ReadAll(file);
    close(file);
    return text;
}

// The work, in a process with the journal's socket as its standard error stream.
Work OnJournal(const Work& work)
{
    return [work]
    {
        struct stat stream = {};
        fstat(STDERR_FILENO, &stream);
        const std::string name =
            std::to_string(stream.st_dev) + ":" + std::to_string(stream.st_ino);
        setenv("JOURNAL_STREAM", name.c_str(), 1);
        return work();
    };
}

class DlogJournal : public testing::Test
{
protected:
    void SetUp() override
    {
        static const std::string reason = TakeRun();
        if (!reason.empty())
            GTEST_SKIP() << reason;
        mSocket = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
        ASSERT_EQ(bind(mSocket, reinterpret_cast<const sockaddr*>(&kAddress), sizeof kAddress), 0);
    }

    void TearDown() override { EndJournal(); }

    void EndJournal()
    {
        close(mSocket);
        unlink(kAddress.sun_path);
        mSocket = -1;
    }

    // One entry as it came, in the datagram or in a file; empty: none came.
    std::string Receive() const
    {
        std::string bytes(1 << 20, '\0');
        iovec part = {bytes.data(), bytes.size()};
        alignas(cmsghdr) char control[CMSG_SPACE(sizeof(int))] = {};
        msghdr message = {};
        message.msg_iov = &part;
        message.msg_iovlen = 1;
        message.msg_control = control;
        message.msg_controllen = sizeof control;
        const ssize_t length = recvmsg(mSocket, &message, MSG_CMSG_CLOEXEC);
        bytes.resize(length < 0 ? 0 : static_cast<size_t>(length));
        const cmsghdr* head = length < 0 ? nullptr : CMSG_FIRSTHDR(&message);
        if (head == nullptr)
            return bytes;
        int file = -1;
        std::memcpy(&file, CMSG_DATA(head), sizeof file);
        return ReadSealedFile(file);
    }

    // What a single call writes, which is nothing to the stream.
    Fields Written(const Work& work) const
    {
        const Outcome outcome = RunChild(OnJournal(work));
        EXPECT_EQ(outcome.text, "");
        Fields fields = Decode(Receive());
        EXPECT_EQ(Receive(), "") << "more than one entry";
        return fields;
    }

    // What the journal gets under a name of the stream that is not the stream's.
    void ExpectLineOnStream(const char* streamName) const
    {
        const Outcome outcome = RunChild(
            [=]
            {
                if (streamName != nullptr)
                    setenv("JOURNAL_STREAM", streamName, 1);
                else
                    unsetenv("JOURNAL_STREAM");
                return Print("text");
            });
        EXPECT_THAT(outcome.text, EndsWith("I TAG: text\n"));
        EXPECT_EQ(Receive(), "");
    }

    int mSocket = -1;
};
} // namespace

TEST_F(DlogJournal, GetsMessagePriorityAndIdentifier)
{
    EXPECT_THAT(Written([] { return Print("seven is 7"); }),
                UnorderedElementsAre(Pair("MESSAGE", "seven is 7"), Pair("PRIORITY", "6"),
                                     Pair("SYSLOG_IDENTIFIER", "TAG")));
}

TEST_F(DlogJournal, GetsEachPriorityAsSyslogCountsIt)
{
    const std::pair<int, const char*> priorities[] = {
        {DLOG_DEBUG, "7"}, {DLOG_INFO, "6"}, {DLOG_WARN, "4"}, {DLOG_ERROR, "3"}};
    for (const auto& [priority, expected] : priorities)
    {
        const auto print = [number = priority]
        { return __dlog_print(LOG_ID_MAIN, number, "TAG", "text"); };
        EXPECT_THAT(Written(print), Contains(Pair("PRIORITY", expected)));
    }
}

TEST_F(DlogJournal, GetsThePlaceThatTheFormatBeginsWith)
{
    const auto print = []
    {
        return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "TAG", "%s: %s(%d) > \033[1;35mis %d\033[0;m",
                            "File.cpp", "Function", 42, 7);
    };
    EXPECT_THAT(Written(print),
                UnorderedElementsAre(Pair("MESSAGE", "File.cpp: Function(42) > is 7"),
                                     Pair("PRIORITY", "6"), Pair("SYSLOG_IDENTIFIER", "TAG"),
                                     Pair("CODE_FILE", "File.cpp"), Pair("CODE_FUNC", "Function"),
                                     Pair("CODE_LINE", "42")));
}

TEST_F(DlogJournal, GetsNoPlaceFromAnotherBeginning)
{
    const Work prints[] = {
        [] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "T", "%s: %s", "a", "b"); },
        [] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "T", "%s: %s(%d)", "a", "b", 1); },
        [] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "T", "%s: %s(%ld) > ", "a", "b", 1L); },
        [] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "T", " %s: %s(%d) > ", "a", "b", 1); },
        [] { return Print("%s: %s(%d) > "); }};
    for (const Work& print : prints)
        EXPECT_THAT(Written(print), UnorderedElementsAre(Key("MESSAGE"), Key("PRIORITY"),
                                                         Key("SYSLOG_IDENTIFIER")));
}

TEST_F(DlogJournal, GetsNoPlaceWithoutItsNames)
{
    const char* none = nullptr;
    const auto print = [=]
    { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "T", "%s: %s(%d) > x", none, "F", 1); };
    const Fields fields = Written(print);
    EXPECT_THAT(fields, Contains(Pair("MESSAGE", "(null): F(1) > x")));
    EXPECT_THAT(fields, Not(Contains(Key("CODE_FILE"))));
}

TEST_F(DlogJournal, GetsNoIdentifierWithoutATag)
{
    for (const char* tag : {"", static_cast<const char*>(nullptr)})
        EXPECT_THAT(Written([=] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, tag, "text"); }),
                    UnorderedElementsAre(Key("MESSAGE"), Key("PRIORITY")));
}

TEST_F(DlogJournal, GetsNoEscapesAndNothingUnprintable)
{
    EXPECT_THAT(Written([] { return Print("a\033[1;35mb\033[m \033[2J\a\t\xff 뒤로"); }),
                Contains(Pair("MESSAGE", "ab \\x1b[2J\\x07\\x09\\xff 뒤로")));
    EXPECT_THAT(Written([] { return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "T", "a%cb", 0); }),
                Contains(Pair("MESSAGE", "a\\x00b")));
}

TEST_F(DlogJournal, KeepsLineFeedsAndNoneMakesAField)
{
    for (const std::string text : {"two\nlines", "a\nPRIORITY=0\n\nMESSAGE=forged\n", "\n", ""})
        EXPECT_THAT(Written([=] { return Print(text.c_str()); }),
                    UnorderedElementsAre(Pair("MESSAGE", text), Pair("PRIORITY", "6"),
                                         Pair("SYSLOG_IDENTIFIER", "TAG")));
}

TEST_F(DlogJournal, GetsNoFieldForgedByTagOrPlace)
{
    const auto print = [] {
        return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "T\nA=1", "%s: %s(%d) > ", "f\nB=2", "g\nC=3",
                            -1);
    };
    EXPECT_THAT(Written(print),
                UnorderedElementsAre(Pair("MESSAGE", "f\nB=2: g\nC=3(-1) > "),
                                     Pair("PRIORITY", "6"), Pair("SYSLOG_IDENTIFIER", "T\\x0aA=1"),
                                     Pair("CODE_FILE", "f\\x0aB=2"), Pair("CODE_FUNC", "g\\x0aC=3"),
                                     Pair("CODE_LINE", "-1")));
}

TEST_F(DlogJournal, HoldsAMessageOfAnyLength)
{
    for (const size_t length : {511, 512, 513, 100000, 1000000, 10000000})
    {
        const std::string text = "a\n" + std::string(length, 'm');
        const Fields fields = Written([=] { return Print(text.c_str()); });
        ASSERT_EQ(fields.count("MESSAGE"), 1u) << length;
        EXPECT_TRUE(fields.find("MESSAGE")->second == text) << length;
    }
}

TEST_F(DlogJournal, GetsItsEntryWithoutTheHeap)
{
    for (const size_t length : {4, 1000, 1024, 1000000})
    {
        const std::string text = "a\n" + std::string(length, 'm');
        const auto print = [&]
        {
            Allocations::Exhaust();
            return __dlog_print(LOG_ID_MAIN, DLOG_INFO, "TAG", "%s: %s(%d) > %s", "File.cpp",
                                "Function", 42, text.c_str());
        };
        EXPECT_THAT(Written(print),
                    AllOf(Contains(Pair("MESSAGE", "File.cpp: Function(42) > " + text)),
                          Contains(Pair("CODE_LINE", "42"))));
    }
}

TEST_F(DlogJournal, MakesTheCallReturnTheNumberOfBytesOfTheEntry)
{
    const Outcome outcome = RunChild(OnJournal([] { return Print("text"); }));
    EXPECT_EQ(outcome.result, static_cast<int>(Receive().size()));
}

TEST_F(DlogJournal, LeavesErrnoAsItWas)
{
    EndJournal();
    const auto print = []
    {
        errno = ERANGE;
        Print("text");
        return errno;
    };
    EXPECT_EQ(RunChild(OnJournal(print)).result, ERANGE);
}

TEST_F(DlogJournal, GetsNothingBelowTheLevel)
{
    const auto print = []
    {
        const int below = Print("below");
        __dlog_print(LOG_ID_MAIN, DLOG_WARN, "TAG", "at it");
        return below;
    };
    const Outcome outcome = RunChild(OnJournal(print), "warn");
    EXPECT_EQ(outcome.result, 0);
    EXPECT_THAT(Decode(Receive()), Contains(Pair("MESSAGE", "at it")));
    EXPECT_EQ(Receive(), "");
}

TEST_F(DlogJournal, GetsTheReportOfAnUnknownLevel)
{
    RunChild(OnJournal([] { return Print("text"); }), "loud");
    EXPECT_THAT(Decode(Receive()), AllOf(Contains(Pair("SYSLOG_IDENTIFIER", "WATCH_PORT")),
                                         Contains(Pair("PRIORITY", "4"))));
    EXPECT_THAT(Decode(Receive()), Contains(Pair("MESSAGE", "text")));
}

TEST_F(DlogJournal, GetsNothingWhenTheStreamIsNotItsOwn)
{
    for (const char* name : {static_cast<const char*>(nullptr), "", ":", "1:2", "x", "8:1 "})
        ExpectLineOnStream(name);
}

TEST_F(DlogJournal, GetsNothingMoreWhenTheStreamIsReplaced)
{
    const auto print = []
    {
        int ends[2];
        if (pipe2(ends, O_NONBLOCK | O_CLOEXEC) != 0)
            return 1;
        Print("first");
        dup2(ends[1], STDERR_FILENO);
        Print("second");
        return ReadAll(ends[0]).empty() ? 2 : 0;
    };
    EXPECT_EQ(RunChild(OnJournal(print)).result, 0);
    EXPECT_THAT(Decode(Receive()), Contains(Pair("MESSAGE", "first")));
    EXPECT_EQ(Receive(), "");
}

TEST_F(DlogJournal, ThatIsGoneLeavesTheLineToTheStream)
{
    EndJournal();
    for (const size_t length : {4, 1000000})
    {
        const std::string text(length, 'm');
        const Outcome outcome = RunChild(OnJournal([=] { return Print(text.c_str()); }));
        EXPECT_TRUE(outcome.text.substr(13) == "I TAG: " + text + "\n") << length;
    }
}

TEST_F(DlogJournal, ThatSleepsHoldsNothingUpAndLeavesTheLineToTheStream)
{
    const int filler = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    while (sendto(filler, "x", 1, 0, reinterpret_cast<const sockaddr*>(&kAddress),
                  sizeof kAddress) == 1)
    {
    }
    EXPECT_EQ(errno, EAGAIN);
    for (const size_t length : {4, 1000000})
    {
        const std::string text(length, 'm');
        const Outcome outcome = RunChild(OnJournal([=] { return Print(text.c_str()); }));
        EXPECT_TRUE(outcome.text.substr(13) == "I TAG: " + text + "\n") << length;
    }
    close(filler);
}

TEST_F(DlogJournal, AndStreamThatAreBothGoneAreReported)
{
    EndJournal();
    const auto print = []
    {
        signal(SIGPIPE, SIG_DFL);
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0)
            return 1;
        dup2(ends[1], STDERR_FILENO);
        close(ends[0]);
        return OnJournal([] { return Print("text"); })();
    };
    EXPECT_EQ(RunChild(print).result, DLOG_ERROR_NOT_WRITTEN);
}

TEST_F(DlogJournal, LeavesNoDescriptorOpen)
{
    const auto print = []
    {
        const int before = dup(STDERR_FILENO);
        close(before);
        Print("text");
        Print(std::string(1000000, 'm').c_str());
        const int after = dup(STDERR_FILENO);
        return after - before;
    };
    EXPECT_EQ(RunChild(OnJournal(print)).result, 0);
}
