#include "body/input/DetentDrag.h"

#include <gtest/gtest.h>

TEST(DetentDrag, PassesADetentEvery15Degrees)
{
    DetentDrag drag(0);
    EXPECT_EQ(drag.MoveTo(14.9), 0);
    EXPECT_EQ(drag.MoveTo(15.1), 1);
    EXPECT_EQ(drag.MoveTo(46), 2);
}

TEST(DetentDrag, CountsBackwards)
{
    DetentDrag drag(10);
    EXPECT_EQ(drag.MoveTo(-4), 0);
    EXPECT_EQ(drag.MoveTo(-6), -1);
    EXPECT_EQ(drag.MoveTo(10), 1);
}

TEST(DetentDrag, GoesOnWhereTheAnglesBeginAnew)
{
    DetentDrag drag(170);
    EXPECT_EQ(drag.MoveTo(-170), 1);
    EXPECT_EQ(drag.MoveTo(165), -1);
}

TEST(DetentDrag, PassesAllOfATurnInSmallSteps)
{
    DetentDrag drag(0);
    int detents = 0;
    for (int angle = 1; angle <= 361; ++angle)
        detents += drag.MoveTo(angle > 180 ? angle - 360 : angle);
    EXPECT_EQ(detents, 24);
}
