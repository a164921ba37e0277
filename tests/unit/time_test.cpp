// Times beside the C library's in random zones, and back.
#include "vstring/time.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <string>
#include <utility>

#include "vstring/formatting/time.h"

namespace {

std::mt19937 random_source(11);

std::tm random_time() {
  constexpr const char* kZones[] = {"UTC", "CET-1CEST,M3.5.0,M10.5.0/3",
                                    "NST3:30NDT,M3.2.0,M11.1.0", "<+1245>-12:45", "<-11>11"};
  setenv("TZ", kZones[random_source() % std::size(kZones)], 1);
  tzset();
  auto seconds = static_cast<std::time_t>(static_cast<std::int32_t>(random_source()));
  std::tm when = {};
  localtime_r(&seconds, &when);
  return when;
}

TEST(Time, FormatsAsTheCLibraryDoes) {
  constexpr const char* kFormat =
      "%a|%A|%b|%B|%c|%C|%d|%D|%e|%F|%g|%G|%h|%H|%I|%j|%m|%M|%n|%p|%r|%R|%s|%S|%t|%T|%u|%U|%V|%w|"
      "%W|%x|%X|%y|%Y|%z|%Z|%%|%Ey|%Od|text";
  for (int round = 0; round < 20000; ++round) {
    std::tm when = random_time();
    char expected[512], found[512];
    std::size_t length = std::strftime(expected, sizeof expected, kFormat, &when);
    ASSERT_EQ(my_strftime(found, sizeof found, kFormat, &when), length);
    ASSERT_STREQ(found, expected);
  }
}

TEST(Time, ReadsBackWhatItWrites) {
  for (int round = 0; round < 5000; ++round) {
    std::tm when = random_time();
    for (const char* format :
         {"%c", "%s", "%A %F %I:%M:%S %p %Z%z", "%C%y day %j %T", "%h%d%Y%X"}) {
      char text[200];
      std::size_t length = my_strftime(text, sizeof text, format, &when);
      std::tm back = {};
      ASSERT_EQ(my_strptime(text, format, &back), text + length) << text;
      std::tm expected = when, found = back;
      expected.tm_isdst = found.tm_isdst = -1;
      ASSERT_EQ(std::mktime(&found), std::mktime(&expected)) << text;
      ASSERT_EQ(back.tm_wday, when.tm_wday) << text;
      ASSERT_EQ(back.tm_yday, when.tm_yday) << text;
    }
  }
}

// mktime takes the one it was closer to last. Moscow set its clocks back without leaving summer.
TEST(Time, TellsApartTimesThatTheClockShowsTwice) {
  constexpr std::pair<const char*, std::time_t> kFirst[] = {
      {"CET-1CEST,M3.5.0,M10.5.0/3", 1729989000}, {"Europe/Moscow", 1414272600}};
  for (auto [zone, first] : kFirst) {
    setenv("TZ", zone, 1);
    tzset();
    for (std::time_t time : {first, first + 3600}) {
      for (std::time_t elsewhere : {time - 5'000'000, time + 5'000'000}) {
        std::tm when = {}, last = {};
        localtime_r(&time, &when);
        std::mktime(localtime_r(&elsewhere, &last));
        char found[30];
        my_strftime(found, sizeof found, "%s", &when);
        EXPECT_EQ(found, std::to_string(time)) << zone;
      }
    }
  }
  setenv("TZ", kFirst[0].first, 1);
  for (const char* elsewhere : {"2024-01-01", "2024-07-01"}) {
    tzset();
    vstring::local_seconds(vstring::parse_time("%F", elsewhere)->when);
    auto parsed = vstring::parse_time("%F %R", "2024-10-27 02:30");
    EXPECT_EQ(vstring::local_seconds(parsed->when), kFirst[0].second);
  }
}

TEST(Time, NeedsRoomForAllAndAMatch) {
  std::tm when = random_time();
  char buffer[11] = "";
  EXPECT_EQ(my_strftime(buffer, 10, "%F", &when), 0U);
  EXPECT_EQ(my_strftime(buffer, 0, "", &when), 0U);
  EXPECT_EQ(my_strftime(buffer, 11, "%F", &when), 10U);
  when.tm_year = 5;
  EXPECT_EQ(my_strptime("2001-02-30", "%F", &when), nullptr);
  EXPECT_EQ(when.tm_year, 5);
  EXPECT_STREQ(my_strptime("2001-02-28 and", "%F", &when), " and");
}

}  // namespace
