#include "CallWriter.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace
{
// Less than the bus library allows, for arrays count too.
constexpr int kMostDepth = 16;
constexpr int kMostElements = 3000;

// A file descriptor would have to be open.
bool IsCarried(const std::string& signature)
{
    return signature.find('h') == std::string::npos &&
           dbus_signature_validate(signature.c_str(), nullptr);
}

std::string CurrentSignature(DBusSignatureIter* iter)
{
    char* text = dbus_signature_iter_get_signature(iter);
    const std::string signature = text;
    dbus_free(text);
    return signature;
}
} // namespace

bool CallWriter::Write(DBusMessage* call)
{
    const std::string signature = NextLine();
    if (!IsCarried(signature))
        return false;
    DBusMessageIter to;
    dbus_message_iter_init_append(call, &to);
    DBusSignatureIter types;
    dbus_signature_iter_init(&types, signature.c_str());
    if (!signature.empty())
        WriteAll(&to, &types);
    return true;
}

std::string CallWriter::NextLine()
{
    std::string line;
    std::getline(mLines, line);
    return line.substr(0, line.find('\0'));
}

std::string CallWriter::NextText(int type)
{
    std::string text = NextLine();
    if (type == DBUS_TYPE_OBJECT_PATH)
        return dbus_validate_path(text.c_str(), nullptr) ? text : "/";
    if (type == DBUS_TYPE_SIGNATURE)
        return dbus_signature_validate(text.c_str(), nullptr) ? text : "";
    if (!dbus_validate_utf8(text.c_str(), nullptr))
        text.clear();
    mTexts.insert(text);
    return text;
}

void CallWriter::WriteAll(DBusMessageIter* to, DBusSignatureIter* types)
{
    do
        WriteValue(to, types);
    while (dbus_signature_iter_next(types));
}

void CallWriter::WriteValue(DBusMessageIter* to, DBusSignatureIter* type)
{
    const int code = dbus_signature_iter_get_current_type(type);
    if (dbus_type_is_basic(code))
        return WriteBasic(to, code);
    if (code == DBUS_TYPE_VARIANT)
        return WriteVariant(to);
    DBusSignatureIter inner;
    dbus_signature_iter_recurse(type, &inner);
    if (code == DBUS_TYPE_ARRAY)
        return WriteArray(to, &inner);
    DBusMessageIter container;
    dbus_message_iter_open_container(to, code, nullptr, &container);
    WriteAll(&container, &inner);
    dbus_message_iter_close_container(to, &container);
}

void CallWriter::WriteBasic(DBusMessageIter* to, int type)
{
    if (!dbus_type_is_fixed(type))
    {
        const std::string text = NextText(type);
        const char* value = text.c_str();
        dbus_message_iter_append_basic(to, type, &value);
        return;
    }
    const std::string line = NextLine();
    std::uint64_t value = 0;
    std::memcpy(&value, line.data(), std::min(line.size(), sizeof value));
    if (type == DBUS_TYPE_BOOLEAN)
        value %= 2;
    dbus_message_iter_append_basic(to, type, &value);
}

void CallWriter::WriteVariant(DBusMessageIter* to)
{
    std::string signature = NextLine();
    if (mDepth == kMostDepth || !IsCarried(signature) ||
        !dbus_signature_validate_single(signature.c_str(), nullptr))
        signature = "s";
    ++mDepth;
    DBusMessageIter container;
    dbus_message_iter_open_container(to, DBUS_TYPE_VARIANT, signature.c_str(), &container);
    DBusSignatureIter type;
    dbus_signature_iter_init(&type, signature.c_str());
    WriteValue(&container, &type);
    dbus_message_iter_close_container(to, &container);
    --mDepth;
}

void CallWriter::WriteArray(DBusMessageIter* to, DBusSignatureIter* elements)
{
    const int wished = std::atoi(NextLine().c_str());
    DBusMessageIter container;
    dbus_message_iter_open_container(to, DBUS_TYPE_ARRAY, CurrentSignature(elements).c_str(),
                                     &container);
    for (int i = 0; i < wished && mElements < kMostElements; ++i, ++mElements)
        WriteValue(&container, elements);
    dbus_message_iter_close_container(to, &container);
}
