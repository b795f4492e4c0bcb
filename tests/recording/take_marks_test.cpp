#include "recording/take_marks.h"

#include <gtest/gtest.h>

namespace orvel {

// What the marks in the outline show is told in words, for who does not see them.
TEST(TakeMarksTest, AreToldInWords) {
    EXPECT_EQ(marksInWords({}), QString());
    EXPECT_EQ(marksInWords({{{400, 3000}, {3500, 9100}}, {}}).toStdString(), "⊔ gesproken: 0,4 tot 9,1 s");
    EXPECT_EQ(marksInWords({{}, {1200, 3400}}).toStdString(), "▼ te luid bij: 1,2 s, 3,4 s");
    EXPECT_EQ(marksInWords({{{0, 9000}}, {1000, 2000, 3000, 4000, 5000, 6000, 7000}}).toStdString(),
              "⊔ gesproken: 0,0 tot 9,0 s. ▼ te luid bij: 1,0 s, 2,0 s, 3,0 s, 4,0 s, 5,0 s, en nog 2 keer");
}

} // namespace orvel
