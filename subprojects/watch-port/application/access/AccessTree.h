#ifndef WATCH_PORT_APPLICATION_ACCESS_ACCESS_TREE_H
#define WATCH_PORT_APPLICATION_ACCESS_ACCESS_TREE_H

#include "application/access/objects/Accessible.h"
#include "application/display/Display.h"

#include <Ecore_Evas.h>
#include <map>

namespace WatchPort
{

/**
 * What the process shows, as a tree for a screen reader: the application, its windows, the page on
 * top of a navigation frame, and its pictures, texts and controls in the order in which they are
 * drawn.
 *
 * It is read from what is on the canvases, so it needs nothing from the application. A picture gets
 * its name from the group of a theme that draws it: the data item "accessible-name" is a message id
 * of the application's catalogue. A picture of a group without that item has no name.
 *
 * A group of a layout names some of its parts, by a blank between each two: "accessible-decoration"
 * what is not in the tree, a text or what a part holds; "accessible-buttons" what a finger taps.
 * What lies on such a part belongs to the button.
 */
class AccessTree
{
public:
    using Objects = std::map<unsigned, Accessible>;

    static constexpr unsigned kRoot = 0;

    /** @param display Must outlive the object. */
    explicit AccessTree(const Display& display);

    /** Looks at the windows anew. */
    void Update();

    /** By id; the root is among them. */
    const Objects& All() const { return mObjects; }

    /** @return null for an id that there is not, or no more */
    const Accessible* Find(unsigned id) const;

private:
    unsigned Add(unsigned parent, AccessRole role, Evas_Object* object);
    void AddWindow(Ecore_Evas* window);
    unsigned AddControl(unsigned parent, AccessRole role, Evas_Object* widget);
    void AddWithin(Evas_Object* object, unsigned parent);
    void AddMembers(Evas_Object* object, unsigned parent);
    bool AddLeaf(Evas_Object* object, unsigned parent);
    std::string JoinTexts(unsigned parent) const;
    Accessible* FindFocus(unsigned window);
    Accessible* FindFirstText(unsigned parent);

    const Display& mDisplay;
    Objects mObjects;
    // Of what is in the tree and what was before.
    std::map<const void*, unsigned> mIds;
    std::map<const void*, unsigned> mFormerIds;
    unsigned mLastId = kRoot;
};

} // namespace WatchPort

#endif
