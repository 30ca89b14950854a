#include "common/rotary/RotaryFixture.h"

using QivoUi::RotaryEventManager;

namespace
{

class RotaryCircleSurfaceTest : public RotaryFixture
{
protected:
    void TearDown() override
    {
        RotaryFixture::TearDown();
        // The next manager forgets the surface, but a test may look before there is one.
        RotaryEventManager::GetInstance();
        RotaryEventManager::Destroy();
    }
};

TEST_F(RotaryCircleSurfaceTest, DoesNotExistAtFirst)
{
    EXPECT_EQ(RotaryEventManager::GetCircleSurface(), nullptr);
    EXPECT_EQ(RotaryEventManager::mCircleSurface, nullptr);
    EXPECT_EQ(RotaryEventManager::mConformant, nullptr);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(RotaryCircleSurfaceTest, IsMadeFromTheConformant)
{
    Evas_Object* conformant = AddObject("conformant");

    Eext_Circle_Surface* surface = RotaryEventManager::CreateCircleSurface(conformant);

    EXPECT_EQ(Recorder::NameOf(surface), "surface1");
    EXPECT_EQ(RotaryEventManager::GetCircleSurface(), surface);
    EXPECT_EQ(RotaryEventManager::mConformant, conformant);
    EXPECT_EQ(Recorder::Take(), Lines({"eext_circle_surface_conformant_add(conformant)"}));
}

TEST_F(RotaryCircleSurfaceTest, IsMadeOnlyOnce)
{
    Evas_Object* conformant = AddObject("conformant");
    Eext_Circle_Surface* surface = RotaryEventManager::CreateCircleSurface(conformant);
    Recorder::Take();

    EXPECT_EQ(RotaryEventManager::CreateCircleSurface(AddObject("other")), surface);

    EXPECT_EQ(Recorder::Take(), Lines({"error(CreateCircleSurface) Already mCircleSurface Exist"}));
    EXPECT_EQ(RotaryEventManager::GetCircleSurface(), surface);
    EXPECT_EQ(RotaryEventManager::mConformant, conformant);
}

TEST_F(RotaryCircleSurfaceTest, KeepsTheConformantWhenItCannotBeMade)
{
    Evas_Object* conformant = AddObject("conformant");
    Recorder::Fail("eext_circle_surface_conformant_add");

    EXPECT_EQ(RotaryEventManager::CreateCircleSurface(conformant), nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"eext_circle_surface_conformant_add(conformant)",
                                       "error(CreateCircleSurface) Failed Create Circle Surface"}));
    EXPECT_EQ(RotaryEventManager::GetCircleSurface(), nullptr);
    EXPECT_EQ(RotaryEventManager::mConformant, conformant);
}

TEST_F(RotaryCircleSurfaceTest, CanBeTriedAgainWithAnotherConformant)
{
    Recorder::Fail("eext_circle_surface_conformant_add");
    RotaryEventManager::CreateCircleSurface(AddObject("conformant"));
    Recorder::Take();
    Evas_Object* other = AddObject("other");

    EXPECT_NE(RotaryEventManager::CreateCircleSurface(other), nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"eext_circle_surface_conformant_add(other)"}));
    EXPECT_EQ(RotaryEventManager::mConformant, other);
}

TEST_F(RotaryCircleSurfaceTest, IsAskedForWithoutAConformantToo)
{
    EXPECT_NE(RotaryEventManager::CreateCircleSurface(nullptr), nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"eext_circle_surface_conformant_add(null)"}));
    EXPECT_EQ(RotaryEventManager::mConformant, nullptr);
}

TEST_F(RotaryCircleSurfaceTest, IsForgottenByTheFirstManager)
{
    RotaryEventManager::Destroy();
    RotaryEventManager::CreateCircleSurface(AddObject("conformant"));
    Recorder::Take();
    EXPECT_NE(RotaryEventManager::GetCircleSurface(), nullptr);

    RotaryEventManager::GetInstance();

    EXPECT_EQ(RotaryEventManager::GetCircleSurface(), nullptr);
    EXPECT_EQ(RotaryEventManager::mConformant, nullptr);
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(RotaryCircleSurfaceTest, IsKeptByAManagerThatIsThere)
{
    Eext_Circle_Surface* surface = RotaryEventManager::CreateCircleSurface(AddObject("conformant"));

    RotaryEventManager::GetInstance();

    EXPECT_EQ(RotaryEventManager::GetCircleSurface(), surface);
}

TEST_F(RotaryCircleSurfaceTest, OutlivesTheManager)
{
    Evas_Object* conformant = AddObject("conformant");
    Eext_Circle_Surface* surface = RotaryEventManager::CreateCircleSurface(conformant);

    RotaryEventManager::Destroy();

    EXPECT_EQ(RotaryEventManager::GetCircleSurface(), surface);
    EXPECT_EQ(RotaryEventManager::mConformant, conformant);
}

} // namespace
