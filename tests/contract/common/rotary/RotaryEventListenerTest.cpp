#include "common/RotaryEventListener.h"

#include "common/rotary/RotaryFixture.h"

using QivoUi::RotaryEventListener;
using QivoUi::RotaryEventManager;

namespace
{

/** Hears of detents by way of the default OnRotaryDetent(). */
class PassedOnRotaryListener : public RotaryEventListener
{
public:
    Evas_Object* GetRotaryViewObject() override { return nullptr; }

    void OnRotaryEvent(int step, unsigned int timeStamp) override
    {
        Recorder::Add("OnRotaryEvent(" + std::to_string(step) + ", " + std::to_string(timeStamp) +
                      ")");
    }
};

/** Hears of nothing. */
class DeafRotaryListener : public RotaryEventListener
{
public:
    Evas_Object* GetRotaryViewObject() override
    {
        Recorder::Add("GetRotaryViewObject");
        return nullptr;
    }
};

class RotaryEventListenerTest : public RotaryFixture
{
};

TEST_F(RotaryEventListenerTest, PassesADetentOnByDefault)
{
    PassedOnRotaryListener listener;

    static_cast<RotaryEventListener&>(listener).OnRotaryDetent(-1, 4000000000U);

    EXPECT_EQ(Recorder::Take(), Lines({"OnRotaryEvent(-1, 4000000000)"}));
}

TEST_F(RotaryEventListenerTest, NeedNotHearOfDetents)
{
    DeafRotaryListener listener;

    static_cast<RotaryEventListener&>(listener).OnRotaryDetent(1, 5);

    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(RotaryEventListenerTest, IsAskedForItsObjectOnce)
{
    DeafRotaryListener listener;

    mManager->RegisterEventListener(&listener);

    EXPECT_EQ(Recorder::TakeOnly({"GetRotaryViewObject"}), Lines({"GetRotaryViewObject"}));
}

TEST_F(RotaryEventListenerTest, IsRegisteredWithItsObjectOnTop)
{
    FakeRotaryListener listener("a", AddObject("view"));

    mManager->RegisterEventListener(&listener);

    EXPECT_EQ(Recorder::Take(), Join({"eext_rotary_object_event_callback_priority_add(view, -100, "
                                      "RotaryEventManager::SRotaryEventCB, manager)"},
                                     Activation(listener.GetRotaryViewObject())));
    ASSERT_EQ(Stack(), Lines({"view"}));
    EXPECT_EQ(mManager->mRotaryEventDataList.back()->mEventListener, &listener);
}

TEST_F(RotaryEventListenerTest, MayRegisterAnotherWhenItIsAskedForItsObject)
{
    class AskedRotaryListener : public FakeRotaryListener
    {
    public:
        using FakeRotaryListener::FakeRotaryListener;
        Evas_Object* GetRotaryViewObject() override
        {
            RotaryEventManager::GetInstance()->RegisterEventListener(mOther);
            return FakeRotaryListener::GetRotaryViewObject();
        }

        RotaryEventListener* mOther = nullptr;
    };
    FakeRotaryListener other("other", AddObject("otherView"));
    AskedRotaryListener listener("a", AddObject("view"));
    listener.mOther = &other;

    mManager->RegisterEventListener(&listener);

    EXPECT_EQ(Stack(), Lines({"otherView", "view"}));
    EXPECT_EQ(mManager->mRotaryEventDataList.back()->mEventListener, &listener);
}

TEST_F(RotaryEventListenerTest, IsNotRegisteredWhenNull)
{
    mManager->RegisterEventListener(nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({"warn(RegisterEventListener) eventListener is NULL"}));
    EXPECT_EQ(Stack(), Lines());
}

TEST_F(RotaryEventListenerTest, IsOnTopAlsoWhenItsCallbackIsRefused)
{
    FakeRotaryListener listener("a", AddObject("view"));
    Recorder::Fail("eext_rotary_object_event_callback_priority_add");

    mManager->RegisterEventListener(&listener);

    EXPECT_EQ(Recorder::Take(), Join({"eext_rotary_object_event_callback_priority_add(view, -100, "
                                      "RotaryEventManager::SRotaryEventCB, manager)",
                                      "error(SetRotaryEventCB) [Failed] register "
                                      "eext_rotary_event_callback_set"},
                                     Activation(listener.GetRotaryViewObject())));
    EXPECT_EQ(Stack(), Lines({"view"}));
}

TEST_F(RotaryEventListenerTest, AnyAnswerButTrueRefusesTheCallback)
{
    Recorder::Answer("eext_rotary_object_event_callback_priority_add", 2);

    mManager->SetRotaryEventCB(AddObject("view"));

    EXPECT_EQ(Recorder::TakeLog(), Lines({"error(SetRotaryEventCB) [Failed] register "
                                          "eext_rotary_event_callback_set"}));
}

TEST_F(RotaryEventListenerTest, IsOnTopAlsoWithoutAnObject)
{
    FakeRotaryListener listener("a", nullptr);
    Recorder::Fail("evas_object_event_callback_add");

    mManager->RegisterEventListener(&listener);

    EXPECT_EQ(Recorder::Take(), Activation(nullptr));
    EXPECT_EQ(Stack(), Lines({"null"}));
}

TEST_F(RotaryEventListenerTest, HasTwoRecordsWhenItIsRegisteredTwice)
{
    const auto listener = Register("a");
    const std::shared_ptr<Record> newer = [&]
    {
        mManager->RegisterEventListener(listener.get());
        return mManager->mRotaryEventDataList.back();
    }();
    Evas_Object* view = listener->GetRotaryViewObject();
    ASSERT_EQ(Stack(), Lines({"aView", "aView"}));
    Recorder::Take();

    mManager->UnRegisterEventListener(listener.get());

    EXPECT_EQ(
        Recorder::Take(),
        Join({"info(UnRegisterEventListener) object:" + Address(view),
              "eext_rotary_object_event_callback_del(aView, RotaryEventManager::SRotaryEventCB)"},
             Deactivation("aView", view)));
    ASSERT_EQ(Stack(), Lines({"aView"}));
    EXPECT_EQ(mManager->mRotaryEventDataList.front(), newer);
}

TEST_F(RotaryEventListenerTest, GivesTheTopBackWhenItIsUnregistered)
{
    const auto a = Register("a");
    const auto b = Register("b");

    mManager->UnRegisterEventListener(b.get());

    EXPECT_EQ(
        Recorder::Take(),
        Join({"info(UnRegisterEventListener) object:" + Address(b->GetRotaryViewObject()),
              "eext_rotary_object_event_callback_del(bView, RotaryEventManager::SRotaryEventCB)"},
             Deactivation("bView", a->GetRotaryViewObject())));
    EXPECT_EQ(Turn(*b), Lines());
}

TEST_F(RotaryEventListenerTest, IsUnregisteredWithoutAnObjectToo)
{
    FakeRotaryListener listener("a", nullptr);
    Recorder::Fail("evas_object_event_callback_add");
    mManager->RegisterEventListener(&listener);
    Recorder::Take();
    Recorder::Fail("evas_object_event_callback_del");

    mManager->UnRegisterEventListener(&listener);

    EXPECT_EQ(Recorder::Take(),
              Join({"info(UnRegisterEventListener) object:(nil)"}, Deactivation("null", nullptr)));
}

TEST_F(RotaryEventListenerTest, IsNotUnregisteredWhenUnknownOrNull)
{
    const auto listener = Register("a");
    FakeRotaryListener stranger("b", listener->GetRotaryViewObject());

    mManager->UnRegisterEventListener(&stranger);
    EXPECT_EQ(Recorder::Take(), Lines());

    mManager->UnRegisterEventListener(nullptr);
    EXPECT_EQ(Recorder::Take(), Lines({"error(FindRotaryEventData) Invalid eventListener"}));
    EXPECT_EQ(Stack(), Lines({"aView"}));
}

TEST_F(RotaryEventListenerTest, SetsAndUnsetsTheCallbackOfAnObject)
{
    Evas_Object* view = AddObject("view");

    mManager->SetRotaryEventCB(view);
    mManager->UnSetRotaryEventCB(view);

    EXPECT_EQ(Recorder::Take(), Lines({"eext_rotary_object_event_callback_priority_add(view, -100, "
                                       "RotaryEventManager::SRotaryEventCB, manager)",
                                       "eext_rotary_object_event_callback_del(view, "
                                       "RotaryEventManager::SRotaryEventCB)"}));
}

TEST_F(RotaryEventListenerTest, SetsAndUnsetsNoCallbackOfANullObject)
{
    mManager->SetRotaryEventCB(nullptr);
    mManager->UnSetRotaryEventCB(nullptr);

    EXPECT_EQ(Recorder::Take(), Lines());
}

} // namespace
