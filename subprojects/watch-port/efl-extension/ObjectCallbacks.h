#ifndef WATCH_PORT_EFL_EXTENSION_OBJECT_CALLBACKS_H
#define WATCH_PORT_EFL_EXTENSION_OBJECT_CALLBACKS_H

#include <Evas.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace WatchPort
{

/** A callback that an application has added to an object. */
template <typename Callback> struct ObjectCallback
{
    Evas_Object* object = nullptr;
    Evas_Callback_Priority priority = EVAS_CALLBACK_PRIORITY_DEFAULT;
    Callback callback = nullptr;
    void* data = nullptr;
    /** Its object is deleted or it was removed: it must not be called any more. */
    bool isRemoved = false;
};

/**
 * The callbacks that applications have added to objects, in calling order: lower priority values
 * first, of equal ones the newest first. Callbacks of deleted objects are removed.
 */
template <typename Callback> class ObjectCallbacks
{
public:
    using Entry = ObjectCallback<Callback>;

    ObjectCallbacks() = default;
    ObjectCallbacks(const ObjectCallbacks&) = delete;
    ObjectCallbacks& operator=(const ObjectCallbacks&) = delete;

    void Add(Evas_Object* object, Evas_Callback_Priority priority, Callback callback, void* data)
    {
        const bool isKnown = Has(object);
        auto isLater = [priority](const auto& entry) { return entry->priority >= priority; };
        auto place = std::find_if(mEntries.begin(), mEntries.end(), isLater);
        mEntries.insert(place,
                        std::make_shared<Entry>(Entry{object, priority, callback, data, false}));
        if (!isKnown)
            evas_object_event_callback_add(object, EVAS_CALLBACK_DEL, SObjectDeletedCB, this);
    }

    /** Removes the newest registration of a callback; returns its data, or null if there is none.
     */
    void* Remove(Evas_Object* object, Callback callback)
    {
        auto newest =
            std::find_if(mEntries.begin(), mEntries.end(),
                         [&](const auto& entry)
                         { return entry->object == object && entry->callback == callback; });
        if (newest == mEntries.end())
            return nullptr;
        void* data = (*newest)->data;
        (*newest)->isRemoved = true;
        mEntries.erase(newest);
        if (!Has(object))
            evas_object_event_callback_del_full(object, EVAS_CALLBACK_DEL, SObjectDeletedCB, this);
        return data;
    }

    /** The callbacks of one object. They outlive their removal, so the list may change meanwhile.
     */
    std::vector<std::shared_ptr<const Entry>> Of(const Evas_Object* object) const
    {
        std::vector<std::shared_ptr<const Entry>> found;
        for (const auto& entry : mEntries)
            if (entry->object == object)
                found.push_back(entry);
        return found;
    }

    const std::vector<std::shared_ptr<Entry>>& All() const { return mEntries; }

private:
    bool Has(const Evas_Object* object) const
    {
        return std::any_of(mEntries.begin(), mEntries.end(),
                           [object](const auto& entry) { return entry->object == object; });
    }

    static void SObjectDeletedCB(void* data, Evas*, Evas_Object* object, void*)
    {
        auto* self = static_cast<ObjectCallbacks*>(data);
        auto& entries = self->mEntries;
        auto isKept = [object](const auto& entry) { return entry->object != object; };
        auto first = std::stable_partition(entries.begin(), entries.end(), isKept);
        std::for_each(first, entries.end(), [](const auto& entry) { entry->isRemoved = true; });
        entries.erase(first, entries.end());
    }

    std::vector<std::shared_ptr<Entry>> mEntries;
};

} // namespace WatchPort

#endif
