#ifndef WATCH_PORT_UI_EXTENSION_THEME_TABLES_H
#define WATCH_PORT_UI_EXTENSION_THEME_TABLES_H

#include <algorithm>
#include <memory>
#include <vector>

namespace WatchPort
{

/**
 * The tables of one kind that the process has read, and which of them is set. The set table is
 * applied, in the way that the user wants it, while the tables are enabled; at first they are not.
 */
template <typename Table, typename Way> class ThemeTables
{
public:
    /** Reads a table, which lives as long as this object; null when the file is not such a table.
     */
    Table* Add(const char* path)
    {
        auto table = std::make_unique<Table>();
        if (!table->Load(path))
            return nullptr;
        mTables.push_back(std::move(table));
        return mTables.back().get();
    }

    /** Replaces the set table; false, with nothing changed, when it is not from Add(). */
    bool Set(const Table* table)
    {
        auto isTable = [table](const std::unique_ptr<Table>& known)
        { return known.get() == table; };
        if (std::none_of(mTables.begin(), mTables.end(), isTable))
            return false;
        if (mIsEnabled && mCurrent)
            mCurrent->TakeOff(mWay);
        mCurrent = table;
        if (mIsEnabled)
            mCurrent->Apply(mWay);
        return true;
    }

    void SetEnabled(bool isEnabled)
    {
        if (mCurrent && isEnabled && !mIsEnabled)
            mCurrent->Apply(mWay);
        if (mCurrent && !isEnabled && mIsEnabled)
            mCurrent->TakeOff(mWay);
        mIsEnabled = isEnabled;
    }

    void SetWay(const Way& way)
    {
        mWay = way;
        if (mCurrent && mIsEnabled)
            mCurrent->Apply(mWay);
    }

    /** How tables are applied. */
    const Way& GetWay() const { return mWay; }
    /** The set table, or null. */
    const Table* Current() const { return mCurrent; }

private:
    std::vector<std::unique_ptr<Table>> mTables;
    const Table* mCurrent = nullptr;
    Way mWay{};
    bool mIsEnabled = false;
};

} // namespace WatchPort

#endif
