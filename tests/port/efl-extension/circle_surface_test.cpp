#include "port/OffScreen.h"

#include "efl_extension.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace
{

class CircleSurface : public OffScreenTest
{
protected:
    Evas_Object* AddConformant(int x, int y, int size)
    {
        Evas_Object* conformant = elm_conformant_add(mWindow);
        evas_object_geometry_set(conformant, x, y, size, size);
        evas_object_show(conformant);
        return conformant;
    }

    static Evas_Object* AddDrawn(Evas_Object* scroller, Eext_Circle_Surface* surface)
    {
        Evas_Object* circleObject = eext_circle_object_scroller_add(scroller, surface);
        eext_circle_object_scroller_policy_set(circleObject, ELM_SCROLLER_POLICY_ON,
                                               ELM_SCROLLER_POLICY_ON);
        return circleObject;
    }

    static Eina_Rectangle GeometryOf(Evas_Object* object)
    {
        Eina_Rectangle geometry{};
        evas_object_geometry_get(object, &geometry.x, &geometry.y, &geometry.w, &geometry.h);
        return geometry;
    }

    static bool HasGeometry(Evas_Object* object, Eina_Rectangle expected)
    {
        Eina_Rectangle geometry = GeometryOf(object);
        return eina_rectangle_equal(&geometry, &expected);
    }
};

TEST_F(CircleSurface, IsNullForANullConformantWithOneLine)
{
    EXPECT_EQ(eext_circle_surface_conformant_add(nullptr), nullptr);
    EXPECT_THAT(LogLines(), ElementsAre(HasSubstr("conformant is null")));
}

TEST_F(CircleSurface, HasItsConformantsGeometryAndFollowsIt)
{
    Evas_Object* conformant = AddConformant(10, 20, 300);
    Eext_Circle_Surface* surface = eext_circle_surface_conformant_add(conformant);
    Evas_Object* circleObject = AddDrawn(AddScroller(kSize, 2 * kSize), surface);
    EXPECT_TRUE(HasGeometry(circleObject, {10, 20, 300, 300}));

    evas_object_geometry_set(conformant, 0, 0, kSize, kSize);
    EXPECT_TRUE(Toolkit::RunUntil([&] { return HasGeometry(circleObject, {0, 0, kSize, kSize}); }));
}

TEST_F(CircleSurface, LeavesItsCircleObjectsScrollingWhenItsConformantIsDeleted)
{
    Evas_Object* conformant = AddConformant(0, 0, kSize);
    Eext_Circle_Surface* surface = eext_circle_surface_conformant_add(conformant);
    Evas_Object* scroller = AddScroller(kSize, 2 * kSize);
    Evas_Object* circleObject = AddDrawn(scroller, surface);
    eext_rotary_object_event_activated_set(circleObject, EINA_TRUE);
    EXPECT_TRUE(evas_object_visible_get(circleObject));

    evas_object_del(conformant);
    EXPECT_FALSE(evas_object_visible_get(circleObject));
    TurnWheel(1);
    EXPECT_TRUE(Toolkit::RunUntil(
        [&]
        {
            int top = 0;
            elm_scroller_region_get(scroller, nullptr, &top, nullptr, nullptr);
            return top == kSize / 4;
        }));
    EXPECT_FALSE(evas_object_visible_get(circleObject));
}

TEST_F(CircleSurface, CountsAsNoneAfterItsConformantIsDeleted)
{
    Evas_Object* conformant = AddConformant(0, 0, kSize);
    Eext_Circle_Surface* surface = eext_circle_surface_conformant_add(conformant);
    evas_object_del(conformant);
    Evas_Object* circleObject = AddDrawn(AddScroller(kSize, 2 * kSize), surface);
    ASSERT_NE(circleObject, nullptr);
    EXPECT_FALSE(evas_object_visible_get(circleObject));
    EXPECT_THAT(LogLines(), ElementsAre(HasSubstr("surface is gone")));
}

TEST_F(CircleSurface, BearsThatItsCircleObjectsAreDeletedFirst)
{
    Evas_Object* conformant = AddConformant(0, 0, kSize);
    Eext_Circle_Surface* surface = eext_circle_surface_conformant_add(conformant);
    Evas_Object* scroller = AddScroller(kSize, 2 * kSize);
    Evas_Object* first = AddDrawn(scroller, surface);
    AddDrawn(scroller, surface);
    evas_object_del(first);
    evas_object_del(scroller);
    evas_object_del(conformant);
    DeliverEvents();
    EXPECT_THAT(LogLines(), IsEmpty());
}

} // namespace
