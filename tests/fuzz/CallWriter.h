#ifndef TESTS_FUZZ_CALL_WRITER_H
#define TESTS_FUZZ_CALL_WRITER_H

#include <dbus/dbus.h>
#include <set>
#include <sstream>
#include <string>

/**
 * Makes arguments of a call from lines of text. The first line is their signature. Each further
 * one is a value: a text, the number of an array's elements, the signature of what a variant holds,
 * or of any other type the first bytes of it. Lines that are missing or make no such value count
 * as empty ones: texts without letters, arrays without elements.
 */
class CallWriter
{
public:
    explicit CallWriter(std::istream& lines) : mLines(lines) {}

    /** @return Whether the arguments are ones that a bus would carry. */
    bool Write(DBusMessage* call);

    /** All texts in the arguments. */
    const std::set<std::string>& Texts() const { return mTexts; }

private:
    std::string NextLine();
    std::string NextText(int type);
    void WriteAll(DBusMessageIter* to, DBusSignatureIter* types);
    void WriteValue(DBusMessageIter* to, DBusSignatureIter* type);
    void WriteBasic(DBusMessageIter* to, int type);
    void WriteVariant(DBusMessageIter* to);
    void WriteArray(DBusMessageIter* to, DBusSignatureIter* elements);

    std::istream& mLines;
    std::set<std::string> mTexts;
    int mDepth = 0;
    int mElements = 0;
};

#endif
