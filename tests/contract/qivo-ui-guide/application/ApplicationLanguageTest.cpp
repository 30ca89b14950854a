#include "harness/Toolkit.h"
#include "qivo-ui-guide/Application.h"
#include "qivo-ui-guide/application/TestApplication.h"

using QivoUi::Application;

namespace
{

const std::string kAsked = "system_settings_get_value_string(13)";
const std::string kFailed =
    "error(GetCurrentLocale) "
    "system_settings_get_value_string(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE) failed ";

class ApplicationLanguageTest : public testing::Test
{
protected:
    void SetUp() override
    {
        Recorder::Reset();
        Platform::Reset();
        // The language would be that of the whole process; before elm_init() it never returns.
        Recorder::Fail("elm_language_set", 1);
        Recorder::Fail("elm_language_set", 2);
    }

    void TearDown() override { Recorder::Reset(); }
};

TEST_F(ApplicationLanguageTest, ReadsTheLanguageAsItIsGiven)
{
    Platform::SetLanguage(" de_DE.UTF-8 ");

    EXPECT_EQ(Application::GetCurrentLocale(), " de_DE.UTF-8 ");

    EXPECT_EQ(Recorder::Take(),
              Lines({kAsked, "warn(GetCurrentLocale) Lang region text :  de_DE.UTF-8 "}));
}

TEST_F(ApplicationLanguageTest, ReadsAnEmptyLanguage)
{
    Platform::SetLanguage("");

    EXPECT_EQ(Application::GetCurrentLocale(), "");

    EXPECT_EQ(Recorder::Take(), Lines({kAsked, "warn(GetCurrentLocale) Lang region text : "}));
}

TEST_F(ApplicationLanguageTest, ReportsAMissingLanguage)
{
    Platform::SetLanguage(nullptr);

    EXPECT_EQ(Application::GetCurrentLocale(), "");

    EXPECT_EQ(Recorder::Take(), Lines({kAsked, kFailed + "[0]"}));
}

TEST_F(ApplicationLanguageTest, ReportsALanguageThatWasNotGiven)
{
    Recorder::Answer("system_settings_get_value_string", 0);
    Platform::LeaveOutputs();

    EXPECT_EQ(Application::GetCurrentLocale(), "");

    EXPECT_EQ(Recorder::Take(), Lines({kAsked, kFailed + "[0]"}));
}

// The text that comes with a failure is nobody's to free.
TEST_F(ApplicationLanguageTest, ReportsALanguageThatFailed)
{
    Recorder::Answer("system_settings_get_value_string", -22);

    EXPECT_EQ(Application::GetCurrentLocale(), "");

    EXPECT_EQ(Recorder::Take(), Lines({kAsked, kFailed + "[-22]"}));
}

TEST_F(ApplicationLanguageTest, TakesAPositiveResultForAFailure)
{
    Recorder::Answer("system_settings_get_value_string", 1);

    EXPECT_EQ(Application::GetCurrentLocale(), "");

    EXPECT_EQ(Recorder::Take(), Lines({kAsked, kFailed + "[1]"}));
}

TEST_F(ApplicationLanguageTest, HandsTheLanguageToTheToolkit)
{
    Platform::SetLanguage("ko_KR.UTF-8");

    Application::AppSystemLangChanged(nullptr);

    EXPECT_EQ(Recorder::Take(),
              Lines({kAsked, "warn(GetCurrentLocale) Lang region text : ko_KR.UTF-8",
                     "info(AppSystemLangChanged) currentLanguage:[ko_KR.UTF-8]",
                     "elm_language_set('ko_KR.UTF-8')"}));
}

TEST_F(ApplicationLanguageTest, KeepsTheLanguageWhenTheNewOneIsEmpty)
{
    Platform::SetLanguage("");

    Application::AppSystemLangChanged(nullptr);

    EXPECT_EQ(Recorder::Take(), Lines({kAsked, "warn(GetCurrentLocale) Lang region text : ",
                                       "info(AppSystemLangChanged) currentLanguage:[]"}));
}

TEST_F(ApplicationLanguageTest, KeepsTheLanguageWhenThereIsNone)
{
    Platform::SetLanguage(nullptr);

    Application::AppSystemLangChanged(nullptr);

    EXPECT_EQ(Recorder::Take(),
              Lines({kAsked, kFailed + "[0]", "info(AppSystemLangChanged) currentLanguage:[]"}));
}

class ApplicationLanguageCallbackTest : public ApplicationLanguageTest
{
protected:
    // The language reaches neither the hook nor the listeners.
    static Lines LinesAfter(const char* marker)
    {
        return {marker, kAsked, "warn(GetCurrentLocale) Lang region text : fr_FR.UTF-8",
                "info(AppSystemLangChanged) currentLanguage:[fr_FR.UTF-8]",
                "elm_language_set('fr_FR.UTF-8')"};
    }

    void SetUp() override
    {
        ApplicationLanguageTest::SetUp();
        Platform::SetLanguage("fr_FR.UTF-8");
        mApp.RegisterAppEventListener(&mListener);
    }

    HookedApplication mApp;
    TestListener mListener{"listener"};
};

TEST_F(ApplicationLanguageCallbackTest, FollowsTheLanguage)
{
    Application::SOnLanguageChanged(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE, &mApp);

    EXPECT_EQ(Recorder::Take(), LinesAfter("mark(SOnLanguageChanged)"));
}

TEST_F(ApplicationLanguageCallbackTest, TreatsANewRegionAsANewLanguage)
{
    Application::SOnRegionChanged(SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY, &mApp);

    EXPECT_EQ(Recorder::Take(), LinesAfter("mark(SOnRegionChanged)"));
}

TEST_F(ApplicationLanguageCallbackTest, FollowsLanguageAndRegionWithoutAnApplication)
{
    Application::SOnLanguageChanged(SYSTEM_SETTINGS_KEY_LOCALE_LANGUAGE, nullptr);
    EXPECT_EQ(Recorder::Take(), LinesAfter("mark(SOnLanguageChanged)"));

    Application::SOnRegionChanged(SYSTEM_SETTINGS_KEY_LOCALE_COUNTRY, nullptr);
    EXPECT_EQ(Recorder::Take(), LinesAfter("mark(SOnRegionChanged)"));
}

} // namespace
