#include "common/util/CommonUtil.h"

#include "harness/Toolkit.h"

using QivoUi::CommonUtil;

namespace
{

class CommonUtilTest : public testing::Test
{
protected:
    void SetUp() override
    {
        Recorder::Reset();
        Platform::Reset();
    }

    void TearDown() override { SetUp(); }
};

TEST_F(CommonUtilTest, PutsTheNameDirectlyBehindTheResourceDirectory)
{
    EXPECT_EQ(CommonUtil::GetResourcePath("edje/qivoui.edj"),
              Platform::ResourceDirectory() + "edje/qivoui.edj");
    EXPECT_EQ(CommonUtil::GetResourcePath("/x"), Platform::ResourceDirectory() + "/x");
}

TEST_F(CommonUtilTest, GivesTheResourceDirectoryItselfForAnEmptyName)
{
    EXPECT_EQ(CommonUtil::GetResourcePath(""), Platform::ResourceDirectory());
}

TEST_F(CommonUtilTest, GivesNoPathAndNoLogWithoutAResourceDirectory)
{
    Recorder::Fail("app_get_resource_path");

    EXPECT_EQ(CommonUtil::GetResourcePath("edje/qivoui.edj"), "");
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(CommonUtilTest, TakesTheResourceDirectoryFromItsOwnCall)
{
    Recorder::Fail("app_get_data_path");

    EXPECT_EQ(CommonUtil::GetResourcePath("a"), Platform::ResourceDirectory() + "a");
}

TEST_F(CommonUtilTest, PutsTheNameDirectlyBehindTheDataDirectory)
{
    EXPECT_EQ(CommonUtil::GetDataPath("a/b"), "/data/of/the/app/a/b");
    EXPECT_EQ(CommonUtil::GetDataPath("/x"), "/data/of/the/app//x");
}

TEST_F(CommonUtilTest, GivesTheDataDirectoryItselfForAnEmptyName)
{
    EXPECT_EQ(CommonUtil::GetDataPath(""), "/data/of/the/app/");
}

TEST_F(CommonUtilTest, GivesNoPathAndNoLogWithoutADataDirectory)
{
    Recorder::Fail("app_get_data_path");

    EXPECT_EQ(CommonUtil::GetDataPath("a"), "");
    EXPECT_EQ(Recorder::Take(), Lines());
}

TEST_F(CommonUtilTest, AsksForTheDirectoryAnewEachTime)
{
    Recorder::Fail("app_get_resource_path", 2);

    EXPECT_NE(CommonUtil::GetResourcePath("a"), "");
    EXPECT_EQ(CommonUtil::GetResourcePath("a"), "");
    EXPECT_NE(CommonUtil::GetResourcePath("a"), "");
}

} // namespace
