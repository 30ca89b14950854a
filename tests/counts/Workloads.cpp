// Fixed work. callgrind counts its steps and writes one profile each, in this order.

#include "common/Log.h"
#include "common/NaviFrame.h"
#include "common/NaviFrameItemPopHandler.h"
#include "common/RotaryEventManager.h"
#include "common/util/StringUtil.h"
#include "counts/Count.h"
#include "support/Toolkit.h"

#include <cstdlib>
#include <memory>

namespace
{
constexpr int kTimes = 1000;
constexpr int kScreens = 20;

Evas_Object* sWindow = nullptr;

class Listener : public QivoUi::RotaryEventListener
{
public:
    explicit Listener(Evas_Object* object) : mObject(object) {}

    Evas_Object* GetRotaryViewObject() override { return mObject; }

private:
    Evas_Object* mObject;
};

std::shared_ptr<QivoUi::NaviFrameItemPopHandler> Push()
{
    auto record = std::make_shared<QivoUi::NaviFrameItemData>();
    record->mViewLayout = elm_grid_add(sWindow);
    return QivoUi::NaviFrame::GetInstance()->PushNaviframeItem(record, false);
}

void ConvertTexts()
{
    using QivoUi::StringUtil;
    StringUtil::StringReplace("Press and hold the Back key\non any screen.", "\n", "<br>");
    StringUtil::Tokenize("Press and hold the Back key on any screen.", " ");
    StringUtil::GetColorTagedString(255, 0, 16, 255, 30, "Press and hold the Back key", "Sans");
}

void TurnDetents(Evas_Object* object)
{
    Eext_Rotary_Event_Info detent = {EEXT_ROTARY_DIRECTION_CLOCKWISE, 0};
    auto* manager = QivoUi::RotaryEventManager::GetInstance();
    for (int i = 0; i < kTimes; ++i)
        QivoUi::RotaryEventManager::SRotaryEventCB(manager, object, &detent);
}

void WriteLogLines()
{
    for (int i = 0; i < kTimes; ++i)
        QIVO_LOG_INFO("operation:[%s]", "default");
}

void PushAndPopScreens()
{
    for (int i = 0; i < kScreens; ++i)
        Push()->Pop(false, nullptr);
}

template <typename Work> void CountTimes(Work work)
{
    Count(
        [work]
        {
            for (int i = 0; i < kTimes; ++i)
                work();
        });
}
} // namespace

int main()
{
    Toolkit::Start(PLATFORM_THEME);
    sWindow = Toolkit::AddWindow();
    Listener listener(evas_object_rectangle_add(evas_object_evas_get(sWindow)));
    QivoUi::RotaryEventManager::GetInstance()->RegisterEventListener(&listener);
    QivoUi::NaviFrame::GetInstance()->CreateNaviFrame(elm_layout_add(sWindow));
    const auto bottom = Push();

    Count([&] { TurnDetents(listener.GetRotaryViewObject()); });
    Count(WriteLogLines);
    CountTimes(ConvertTexts);
    Count(PushAndPopScreens);
    // Without the toolkit's own end, which counts for nothing here.
    std::_Exit(0);
}
