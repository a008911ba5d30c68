#include "editor/project_backup.h"

#include <gtest/gtest.h>

TEST(BackupStamp, CountsHoursAndMinutesFromOneAndHasNoLeadingZeros) {
    std::tm time{};
    time.tm_year = 126;
    time.tm_mon = 1;
    time.tm_mday = 9;
    time.tm_hour = 4;
    time.tm_min = 0;
    time.tm_sec = 7;
    EXPECT_EQ(BackupStamp(time), "2026-2-9-5-1-7");
}

TEST(BackupStamp, OfTheLastMinuteOfTheDayHasHour24AndMinute60) {
    std::tm time{};
    time.tm_year = 99;
    time.tm_mon = 11;
    time.tm_mday = 31;
    time.tm_hour = 23;
    time.tm_min = 59;
    time.tm_sec = 0;
    EXPECT_EQ(BackupStamp(time), "1999-12-31-24-60-0");
}

TEST(SplitImportPath, TakesTheNameBehindTheLastFolder) {
    ImportNames names;
    ASSERT_TRUE(SplitImportPath("C:\\demos\\old\\part.two.vorn", names));
    EXPECT_EQ(names.base, "C:\\demos\\old\\part.two");
    EXPECT_EQ(names.prefix, "part.two-");
    ASSERT_TRUE(SplitImportPath("/home/demos/part.vorn", names));
    EXPECT_EQ(names.base, "/home/demos/part");
    EXPECT_EQ(names.prefix, "part-");
    ASSERT_TRUE(SplitImportPath("part.vorn", names));
    EXPECT_EQ(names.base, "part");
    EXPECT_EQ(names.prefix, "part-");
}

TEST(SplitImportPath, DropsAPathWithoutAnEnding) {
    ImportNames names;
    EXPECT_FALSE(SplitImportPath("C:\\demos\\part", names));
    EXPECT_FALSE(SplitImportPath("", names));
}
