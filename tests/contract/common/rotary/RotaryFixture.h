#ifndef TESTS_CONTRACT_COMMON_ROTARYFIXTURE_H
#define TESTS_CONTRACT_COMMON_ROTARYFIXTURE_H

#include "common/RotaryEventManager.h"
#include "harness/Toolkit.h"
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <utility>

/** Records the detents that it gets, and does what a test has set inside each. */
class FakeRotaryListener : public QivoUi::RotaryEventListener
{
public:
    FakeRotaryListener(std::string name, Evas_Object* object)
        : mName(std::move(name)), mObject(object)
    {
    }

    Evas_Object* GetRotaryViewObject() override { return mObject; }

    void OnRotaryDetent(int step, unsigned int timeStamp) override
    {
        {
            const Allocations::Pause pause;
            Recorder::Add(mName + ".OnRotaryDetent(" + std::to_string(step) + ", " +
                          std::to_string(timeStamp) + ")");
        }
        if (mReaction)
        {
            mReaction();
        }
    }

    std::function<void()> mReaction;

private:
    std::string mName;
    Evas_Object* mObject;
};

/** A fresh rotary event manager, "manager" in the recorded calls. */
class RotaryFixture : public ToolkitTest
{
protected:
    using Record = QivoUi::RotaryEventManager::RotaryEventData;

    void SetUp() override
    {
        ToolkitTest::SetUp();
        mManager = QivoUi::RotaryEventManager::GetInstance();
        Recorder::Name(mManager, "manager");
    }

    Evas_Object* AddObject(const std::string& name)
    {
        Evas_Object* object = evas_object_rectangle_add(evas_object_evas_get(mWindow));
        Recorder::Name(object, name);
        return object;
    }

    /** A listener, with its object, on top of the stack. */
    std::unique_ptr<FakeRotaryListener> Register(const std::string& name)
    {
        auto listener = std::make_unique<FakeRotaryListener>(name, AddObject(name + "View"));
        mManager->RegisterEventListener(listener.get());
        Recorder::Take();
        return listener;
    }

    /** Turns the bezel clockwise over the listener's object; what that is recorded as. */
    static Lines Turn(FakeRotaryListener& listener)
    {
        Platform::TurnBezel(listener.GetRotaryViewObject(), EEXT_ROTARY_DIRECTION_CLOCKWISE, 7);
        return Recorder::Take();
    }

    static std::shared_ptr<Record> MakeRecord(Evas_Object* object)
    {
        auto record = std::make_shared<Record>();
        record->mViewObject = object;
        return record;
    }

    /** The objects on the stack, the activated one last. */
    Lines Stack()
    {
        Lines names;
        for (const std::shared_ptr<Record>& record : mManager->mRotaryEventDataList)
        {
            names.push_back(record ? Recorder::NameOf(record->mViewObject) : "empty");
        }
        return names;
    }

    /** What putting an object on top is recorded as. */
    static Lines Activation(Evas_Object* object)
    {
        const std::string name = Recorder::NameOf(object);
        return {"warn(ActivateRotateEvent) object :" + Address(object),
                "eext_rotary_object_event_activated_set(" + name + ", true)",
                "evas_object_event_callback_add(" + name +
                    ", 19, RotaryEventManager::SViewObjectDeleteCB, manager)"};
    }

    /** What taking an object away is recorded as, with the one that is now on top, if any. */
    static Lines Deactivation(const std::string& name, Evas_Object* top)
    {
        Lines lines = {
            "eext_rotary_object_event_activated_set(" + name + ", false)",
            "evas_object_event_callback_del(" + name +
                ", 19, RotaryEventManager::SViewObjectDeleteCB)",
        };
        if (top)
        {
            lines.push_back("warn(DeActivateRotateEvent) object :" + Address(top));
            lines.push_back("eext_rotary_object_event_activated_set(" + Recorder::NameOf(top) +
                            ", true)");
        }
        else
        {
            lines.push_back("error(DeActivateRotateEvent) Initialize Rotary Activation");
        }
        lines.push_back("mark(DeActivateRotateEvent)");
        return lines;
    }

    /** One after the other. */
    static Lines Join(Lines first, const Lines& second)
    {
        first.insert(first.end(), second.begin(), second.end());
        return first;
    }

    /** An address as a log line shows it. */
    static std::string Address(const void* object)
    {
        char text[32];
        std::snprintf(text, sizeof(text), "%p", object);
        return text;
    }

    QivoUi::RotaryEventManager* mManager = nullptr;
};

#endif
