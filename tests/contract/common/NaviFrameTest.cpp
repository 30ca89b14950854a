#include "common/NaviFrame.h"

#include "common/NaviFrameItemPopHandler.h"
#include "harness/Toolkit.h"

using QivoUi::NaviFrame;
using QivoUi::NaviFrameItemData;

namespace
{

class NaviFrameTest : public ToolkitTest
{
protected:
    void SetUp() override
    {
        ToolkitTest::SetUp();
        mLayout = elm_layout_add(mWindow);
        elm_layout_theme_set(mLayout, "layout", "application", "default");
        evas_object_resize(mLayout, 360, 360);
        evas_object_show(mLayout);
        mFrame = NaviFrame::GetInstance();
        mFrame->SetMainWindow(mWindow);
        mFrame->CreateNaviFrame(mLayout);
        Recorder::Take();
    }

    Evas_Object* mLayout = nullptr;
    NaviFrame* mFrame = nullptr;
};

TEST_F(NaviFrameTest, PutsTheWidgetIntoTheLayoutsContent)
{
    NaviFrame::Destroy();
    NaviFrame::GetInstance()->CreateNaviFrame(mLayout);

    EXPECT_EQ(Recorder::TakeOnly({"elm_"}),
              Lines({"elm_naviframe_add(layout1)",
                     "elm_object_part_content_set(layout1, 'elm.swallow.content', naviframe2)"}));
}

} // namespace
