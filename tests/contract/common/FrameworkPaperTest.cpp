#include "FrameworkPaper.h"
#include "common/BaseViewController.h"
#include "common/RotaryEventManager.h"
#include "common/navi-frame/NaviFrameFixture.h"
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <utility>

using QivoUi::BaseView;
using QivoUi::BaseViewController;
using QivoUi::NaviFrame;
using QivoUi::NaviFrameItemData;
using QivoUi::RotaryEventManager;

namespace
{

/** A screen that takes the bezel, and notes each call of its view, controller and listeners. */
class Screen : public BaseViewController,
               public QivoUi::NaviFrameStateListener,
               public QivoUi::RotaryEventListener
{
public:
    Screen(std::string name, Lines& calls) : mName(std::move(name)), mCalls(calls) {}

    void Initialize() override
    {
        Say("Initialize");
        mBaseViewPtr = std::make_shared<View>(*this);
        mBaseViewPtr->CreateView();
        RotaryEventManager::GetInstance()->RegisterEventListener(this);
    }
    void DeInitialize() override
    {
        Say("DeInitialize");
        RotaryEventManager::GetInstance()->UnRegisterEventListener(this);
    }
    std::shared_ptr<QivoUi::NaviFrameItemPopHandler> ShowView(bool animated) override
    {
        Say("ShowView");
        return BaseViewController::ShowView(animated);
    }
    void OnViewBackEvent() override
    {
        Say("OnViewBackEvent");
        BaseViewController::OnViewBackEvent();
    }
    bool OnViewPopEvent() override
    {
        Say("OnViewPopEvent");
        return mIsPopAllowed;
    }
    void OnItemResume() override { Say("OnItemResume"); }
    void OnItemPause() override { Say("OnItemPause"); }
    void OnItemTransitionFinished() override { Say("OnItemTransitionFinished"); }
    void OnRotaryDetent(int, unsigned int) override { Say("OnRotaryDetent"); }
    Evas_Object* GetRotaryViewObject() override { return mBaseViewPtr->GetViewLayout(); }

    bool mIsPopAllowed = true;

private:
    class View : public BaseView
    {
    public:
        explicit View(Screen& screen) : mScreen(screen) {}
        std::shared_ptr<NaviFrameItemData> CreateViewImpl(Evas_Object* parent) override
        {
            mScreen.Say("CreateViewImpl");
            auto data = std::make_shared<NaviFrameItemData>();
            data->mViewLayout = elm_layout_add(parent);
            data->mStateListener = &mScreen;
            return data;
        }
        void OnLanguageChanged() override { mScreen.Say("OnLanguageChanged"); }

    private:
        Screen& mScreen;
    };

    void Say(const std::string& call) { mCalls.push_back(mName + "." + call); }

    std::string mName;
    Lines& mCalls;
};

/** Compares what is called with the blocks "```calls NAME" of docs/framework.md. */
class FrameworkPaperTest : public NaviFrameFixture, public QivoUi::NaviFrameLowerEventListener
{
protected:
    void SetUp() override
    {
        NaviFrameFixture::SetUp();
        mFrame->mNaviFrmaeLowerEventListener = this;
    }

    void OnNaviFrameLowered() override { mCalls.push_back("Application.OnNaviFrameLowered"); }

    // A line's first word is the call; one that begins with "..." tells what else happens.
    static Lines Told(const std::string& name)
    {
        std::ifstream paper(FRAMEWORK_PAPER);
        Lines calls;
        std::string line;
        while (std::getline(paper, line) && line != "```calls " + name)
        {
        }
        while (std::getline(paper, line) && line != "```")
        {
            std::string call;
            std::istringstream(line) >> call;
            if (call != "...")
            {
                calls.push_back(call);
            }
        }
        return calls;
    }

    void ExpectAsTold(const std::string& name)
    {
        EXPECT_EQ(std::exchange(mCalls, {}), Told(name)) << name;
    }

    void WaitFor(const std::string& call)
    {
        EXPECT_TRUE(
            Toolkit::RunUntil([&] { return std::count(mCalls.begin(), mCalls.end(), call) > 0; }))
            << call;
    }

    static void Open(Screen& screen, bool animated)
    {
        screen.Initialize();
        screen.ShowView(animated);
    }

    /** Screens that lie above each other; how they came is not told again. */
    void Stand(const std::vector<Screen*>& screens)
    {
        for (Screen* screen : screens)
        {
            Open(*screen, false);
        }
        mCalls.clear();
    }

    static void PressBack(const Screen& screen)
    {
        Platform::PressBack(screen.mBaseViewPtr->GetViewLayout());
    }

    void TurnBezel()
    {
        Platform::TurnBezel(Platform::ActivatedObject(), EEXT_ROTARY_DIRECTION_CLOCKWISE, 1);
    }

    Lines mCalls;
    Screen mA{"A", mCalls};
    Screen mB{"B", mCalls};
    Screen mC{"C", mCalls};
};

TEST_F(FrameworkPaperTest, TellsTheLifeOfAScreen)
{
    Open(mA, true);
    ExpectAsTold("first");
    Open(mB, true);
    WaitFor("B.OnItemTransitionFinished");
    ExpectAsTold("open");
    PressBack(mB);
    WaitFor("A.OnItemResume");
    ExpectAsTold("back");
    PressBack(mA);
    ExpectAsTold("last");
    EXPECT_FALSE(mFrame->IsNaviFrameEmpty());
}

TEST_F(FrameworkPaperTest, TellsOfAPopThatIsRefused)
{
    Stand({&mA, &mB});
    mB.mIsPopAllowed = false;
    PressBack(mB);
    ExpectAsTold("refused");
}

TEST_F(FrameworkPaperTest, TellsOfAScreenWithoutATransition)
{
    Stand({&mA});
    Open(mB, false);
    mB.mPopHandlerPtr->Pop(false, nullptr);
    ExpectAsTold("at once");
}

TEST_F(FrameworkPaperTest, TellsOfPauseAndResume)
{
    Stand({&mA, &mB});
    mFrame->OnAppPause();
    mFrame->OnAppResume();
    ExpectAsTold("pause");
}

TEST_F(FrameworkPaperTest, TellsOfALanguage)
{
    Stand({&mA, &mB});
    elm_language_set("de");
    ExpectAsTold("language");
}

TEST_F(FrameworkPaperTest, TellsOfTheEnd)
{
    Stand({&mA, &mB});
    NaviFrame::Destroy();
    evas_object_del(mLayout);
    ExpectAsTold("end");
}

TEST_F(FrameworkPaperTest, TellsHowTheStackIsPoppedToAScreen)
{
    Stand({&mA, &mB, &mC});
    mA.mPopHandlerPtr->PopTo();
    WaitFor("A.OnItemResume");
    ExpectAsTold("pop to");
}

TEST_F(FrameworkPaperTest, TellsHowScreensAreDeleted)
{
    Stand({&mA, &mB, &mC});
    mA.mPopHandlerPtr->DeleteAboveNaviFrameItem();
    ExpectAsTold("delete above");
}

TEST_F(FrameworkPaperTest, TellsHowAScreenIsDeletedFromBelow)
{
    Stand({&mA, &mB, &mC});
    mC.mPopHandlerPtr->DeleteBetweenNaviFrameItem(mA.mPopHandlerPtr);
    ExpectAsTold("delete between");
}

TEST_F(FrameworkPaperTest, TellsWhoGetsTheBezel)
{
    Stand({&mA, &mB});
    TurnBezel();
    PressBack(mB);
    TurnBezel();
    WaitFor("A.OnItemResume");
    TurnBezel();
    ExpectAsTold("bezel");
}

TEST_F(FrameworkPaperTest, NamesTestsThatExist)
{
    std::set<std::string> tests;
    const testing::UnitTest& all = *testing::UnitTest::GetInstance();
    for (int i = 0; i < all.total_test_suite_count(); ++i)
    {
        const testing::TestSuite& suite = *all.GetTestSuite(i);
        for (int j = 0; j < suite.total_test_count(); ++j)
        {
            tests.insert(suite.name() + std::string(".") + suite.GetTestInfo(j)->name());
        }
    }
    std::stringstream paper;
    paper << std::ifstream(FRAMEWORK_PAPER).rdbuf();
    const std::string text = paper.str();
    const std::regex name("\\w+Test\\.\\w+");
    const auto end = std::sregex_iterator();
    EXPECT_NE(std::sregex_iterator(text.begin(), text.end(), name), end);
    for (auto it = std::sregex_iterator(text.begin(), text.end(), name); it != end; ++it)
    {
        EXPECT_EQ(tests.count(it->str()), 1U) << it->str();
    }
}

} // namespace
