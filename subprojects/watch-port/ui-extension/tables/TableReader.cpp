#include "ui-extension/tables/TableReader.h"

#include "base/Printable.h"
#include <dlog.h>

#include <Eina.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace WatchPort
{

namespace
{

constexpr off_t kMaxFileSize = 1 << 20;
constexpr unsigned kMaxTagLength = 4096;

class File
{
public:
    // Opening a FIFO without O_NONBLOCK would wait for a writer.
    explicit File(const char* path) : mDescriptor(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    ~File()
    {
        if (mDescriptor >= 0)
            close(mDescriptor);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    std::optional<std::string> Read(std::string& error) const;

private:
    bool IsAcceptable(std::string& error) const;

    int mDescriptor;
};

bool File::IsAcceptable(std::string& error) const
{
    struct stat status
    {
    };
    if (mDescriptor < 0 || fstat(mDescriptor, &status) != 0)
        error = std::string("cannot be read: ") + strerror(errno);
    else if (!S_ISREG(status.st_mode))
        error = "is not a regular file";
    else if (status.st_size > kMaxFileSize)
        error = "is " + std::to_string(status.st_size) + " bytes long (must be at most " +
                std::to_string(kMaxFileSize) + ")";
    return error.empty();
}

std::optional<std::string> File::Read(std::string& error) const
{
    if (!IsAcceptable(error))
        return std::nullopt;

    std::string text(kMaxFileSize, '\0');
    std::size_t length = 0;
    while (length < text.size())
    {
        ssize_t count = read(mDescriptor, &text[length], text.size() - length);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
        {
            error = std::string("cannot be read: ") + strerror(errno);
            return std::nullopt;
        }
        if (count == 0)
            break;
        length += static_cast<std::size_t>(count);
    }
    text.resize(length);
    return text;
}

// Eina reports an error for a document type with declarations, but can go on after it.
bool IsDocumentType(Eina_Simple_XML_Type type, const char* content, unsigned length)
{
    constexpr std::string_view kStart = "!DOCTYPE";
    return type == EINA_SIMPLE_XML_DOCTYPE ||
           (type == EINA_SIMPLE_XML_ERROR &&
            std::string_view(content, length).substr(0, kStart.size()) == kStart);
}

// Eina's own attribute parser never returns from an attribute without a name.
bool ReadAttributes(std::string_view text, std::map<std::string, std::string>& attributes)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    constexpr std::string_view kNoName = " \t\r\n\"'<>&";
    while (true)
    {
        text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
        if (text.empty())
            return true;
        const std::size_t equals = text.find('=');
        const std::string_view name = text.substr(0, equals);
        if (equals == std::string_view::npos || name.empty() ||
            name.find_first_of(kNoName) != std::string_view::npos)
            return false;
        text.remove_prefix(equals + 1);
        const bool isQuoted = !text.empty() && (text.front() == '"' || text.front() == '\'');
        const std::size_t end = isQuoted ? text.find(text.front(), 1) : std::string_view::npos;
        if (end == std::string_view::npos)
            return false;
        attributes[std::string(name)] = text.substr(1, end - 1);
        text.remove_prefix(end + 1);
    }
}

class Parser
{
public:
    Parser(const char* path, const std::string& text, const TableFormat& format)
        : mPath(path), mText(text), mFormat(format)
    {
    }

    std::optional<std::vector<TableEntry>> Parse();

private:
    static Eina_Bool STokenCB(void* data, Eina_Simple_XML_Type type, const char* content,
                              unsigned offset, unsigned length);

    bool TokenFound(Eina_Simple_XML_Type type, const char* content, unsigned length);
    void TagFound(Eina_Simple_XML_Type type, const char* content, unsigned length);
    void RootFound(bool isEmpty, const std::string& name);
    void EntryFound(const char* content, unsigned length);
    void MoveTo(unsigned offset);
    std::string Place() const;
    std::string RootName() const { return std::string("<") + mFormat.root + ">"; }

    enum class Progress
    {
        BeforeRoot,
        InRoot,
        AfterRoot,
        OtherRoot,
    };

    const char* mPath;
    const std::string& mText;
    const TableFormat& mFormat;
    Progress mProgress = Progress::BeforeRoot;
    bool mIsBroken = false;
    unsigned mOffset = 0;
    long mLine = 1;
    std::vector<TableEntry> mEntries;
    std::exception_ptr mThrown;
};

void Parser::MoveTo(unsigned offset)
{
    offset = std::min<unsigned>(offset, mText.size());
    if (offset < mOffset)
        return;
    mLine += std::count(mText.begin() + mOffset, mText.begin() + offset, '\n');
    mOffset = offset;
}

std::string Parser::Place() const
{
    return std::string(mPath) + ":" + std::to_string(mLine);
}

// The parser is C, which on some machines nothing can be thrown through.
Eina_Bool Parser::STokenCB(void* data, Eina_Simple_XML_Type type, const char* content,
                           unsigned offset, unsigned length)
{
    auto* self = static_cast<Parser*>(data);
    try
    {
        self->MoveTo(offset);
        return self->TokenFound(type, content, length);
    }
    catch (...)
    {
        self->mThrown = std::current_exception();
        return EINA_FALSE;
    }
}

bool Parser::TokenFound(Eina_Simple_XML_Type type, const char* content, unsigned length)
{
    if (IsDocumentType(type, content, length))
    {
        ReportAt(Place(), DLOG_WARN, "document type ignored");
        return true;
    }
    switch (type)
    {
    case EINA_SIMPLE_XML_OPEN:
    case EINA_SIMPLE_XML_OPEN_EMPTY:
    case EINA_SIMPLE_XML_CLOSE:
        TagFound(type, content, length);
        break;
    case EINA_SIMPLE_XML_ERROR:
        mIsBroken = true;
        break;
    default:
        break;
    }
    return mProgress != Progress::OtherRoot && !mIsBroken;
}

void Parser::TagFound(Eina_Simple_XML_Type type, const char* content, unsigned length)
{
    const char* end = std::find_if(content, content + length,
                                   [](char c) { return IsControl(c) || c == ' ' || c == '/'; });
    std::string name(content, end);
    if (type == EINA_SIMPLE_XML_CLOSE)
    {
        if (mProgress == Progress::InRoot && name == mFormat.root)
            mProgress = Progress::AfterRoot;
    }
    else if (mProgress == Progress::BeforeRoot)
        RootFound(type == EINA_SIMPLE_XML_OPEN_EMPTY, name);
    else if (mProgress == Progress::InRoot && name == mFormat.entry)
        EntryFound(content, length);
    else
        ReportAt(Place(), DLOG_ERROR,
                 "element " + Quoted(name) + " left out (must be <" + mFormat.entry + "> in " +
                     RootName() + ")");
}

void Parser::RootFound(bool isEmpty, const std::string& name)
{
    if (name != mFormat.root)
    {
        mProgress = Progress::OtherRoot;
        ReportAt(Place(), DLOG_ERROR,
                 "root element " + Quoted(name) + " (must be " + RootName() + ")");
        return;
    }
    mProgress = isEmpty ? Progress::AfterRoot : Progress::InRoot;
}

void Parser::EntryFound(const char* content, unsigned length)
{
    if (length > kMaxTagLength)
    {
        ReportAt(Place(), DLOG_ERROR,
                 "entry left out: it is longer than " + std::to_string(kMaxTagLength) + " bytes");
        return;
    }
    std::map<std::string, std::string> attributes;
    const char* first = eina_simple_xml_tag_attributes_find(content, length);
    const auto rest = first ? static_cast<std::size_t>(content + length - first) : 0;
    if (!ReadAttributes({first, rest}, attributes))
    {
        ReportAt(Place(), DLOG_ERROR,
                 R"(entry left out, its attributes are not of the form NAME="VALUE")");
        return;
    }
    mEntries.emplace_back(std::move(attributes), Place());
}

std::optional<std::vector<TableEntry>> Parser::Parse()
{
    bool isParsed = eina_simple_xml_parse(mText.data(), static_cast<unsigned>(mText.size()),
                                          EINA_TRUE, STokenCB, this);
    if (mThrown)
        std::rethrow_exception(mThrown);
    if (mProgress == Progress::OtherRoot)
        return std::nullopt;
    if (isParsed && !mIsBroken && mProgress == Progress::AfterRoot)
        return std::move(mEntries);

    ReportAt(Place(), DLOG_ERROR,
             "XML breaks off after " + std::to_string(mEntries.size()) +
                 " entries (must be well-formed up to the end of " + RootName() + ")");
    if (mEntries.empty())
        return std::nullopt;
    return std::move(mEntries);
}

} // namespace

std::optional<std::vector<TableEntry>> ReadTable(const char* path, const TableFormat& format)
{
    if (!path)
    {
        ReportAt("table", DLOG_ERROR, "path is null (must be the path of a file)");
        return std::nullopt;
    }
    std::string error;
    std::optional<std::string> text = File(path).Read(error);
    if (!text)
    {
        ReportAt(path, DLOG_ERROR, std::string(format.root) + " " + error);
        return std::nullopt;
    }
    return Parser(path, *text, format).Parse();
}

} // namespace WatchPort
