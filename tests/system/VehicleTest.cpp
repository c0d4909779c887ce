#include "tests/system/SystemTest.h"

#include <fstream>

namespace zm::test {

/** The car's signals and what follows from them. */
class VehicleRun : public SystemTest {
protected:
    std::string value(const std::string& name) {
        for (const auto& line : lines({"pps", "get", "zelmar/vehicle/status"})) {
            if (line.starts_with(name + ":")) {
                return line.substr(line.rfind(':') + 1);
            }
        }
        return {};
    }
    std::string write(const std::string& text) {
        std::ofstream(folder + "/drive.csv") << text;
        return folder + "/drive.csv";
    }
    void playFilm() {
        putDevice({"disc::1", "mixedtype::14", "mediatype::3", "videomode::1"});
        putStatus({"discstate::2"});
        ASSERT_EQ(window(), 17);
    }
    bool locked() { return screen()["video"]["locked"]; }
};

TEST_F(VehicleRun, ParkingFollowsGearSpeedAndIgnition) {
    startManual();
    playFilm();
    EXPECT_EQ(value("restriction"), "0");
    must({"vehicle", "gear", "drive"});
    EXPECT_TRUE(locked());
    settle();
    EXPECT_EQ(window(), 10) << "the parking page";
    EXPECT_EQ(value("restriction"), "1");
    EXPECT_EQ(value("parked"), "false");
    must({"vehicle", "speed", "7.5"});
    EXPECT_EQ(value("restriction"), "1");
    must({"vehicle", "speed", "8"});
    EXPECT_EQ(value("restriction"), "2");
    must({"vehicle", "speed", "0"});
    EXPECT_EQ(value("restriction"), "1") << "it stands at a light";
    EXPECT_TRUE(locked());
    must({"vehicle", "ignition", "off"});
    settle();
    EXPECT_EQ(value("restriction"), "0");
    EXPECT_FALSE(locked());
    EXPECT_EQ(window(), 17);
    must({"vehicle", "speed", "3"});
    EXPECT_TRUE(locked()) << "it rolls";
}

TEST_F(VehicleRun, ADrivingCarCannotBeSaidToBeParked) {
    startManual();
    must({"vehicle", "speed", "50"});
    EXPECT_THAT(mustFail({"device", "parking", "1"}), HasSubstr("the car is not parked: gear park, 50 km/h"));
    EXPECT_THAT(mustFail({"device", "--silent", "2", "7"}), HasSubstr("not parked"));
    EXPECT_TRUE(locked());
    must({"device", "parking", "fail"});
    EXPECT_TRUE(locked());
    must({"device", "parking", "0"});
    must({"vehicle", "speed", "0"});
    EXPECT_FALSE(locked());
    must({"device", "parking", "1"});
}

TEST_F(VehicleRun, ThePermissionOfADriveStaysWithItsSpeedsAndEndsWithIt) {
    startManual();
    playFilm();
    must({"vehicle", "gear", "drive"});
    must({"vehicle", "speed", "30"});
    settle();
    ASSERT_EQ(window(), 10);
    const auto rect = item(10, 2103)["rect"];
    must({"touch", std::to_string(rect[0].get<int>() + 5), std::to_string(rect[1].get<int>() + 5)});
    EXPECT_FALSE(locked()) << "the driver's own touch";
    must({"vehicle", "speed", "90"});
    must({"vehicle", "speed", "0"});
    EXPECT_FALSE(locked()) << "the same drive";
    must({"vehicle", "gear", "park"});
    must({"vehicle", "gear", "drive"});
    EXPECT_TRUE(locked()) << "the next drive";
    // Said again, it changes nothing.
    must({"vehicle", "gear", "drive"});
    EXPECT_TRUE(locked());
}

TEST_F(VehicleRun, ARepeatedSignalDoesNotParkACarThatWasSaidToDrive) {
    startManual();
    must({"device", "parking", "0"});
    EXPECT_EQ(value("restriction"), "1");
    must({"vehicle", "speed", "0"});
    must({"vehicle", "gear", "park"});
    EXPECT_TRUE(locked());
    EXPECT_EQ(value("restriction"), "1");
}

TEST_F(VehicleRun, TheLightMakesDayAndNightWithoutFlicker) {
    startManual();
    EXPECT_EQ(value("daynight"), "night");
    const auto after = [&](const char* lux) {
        must({"vehicle", "light", lux});
        return value("daynight");
    };
    const std::string dark = must({"shot", "--digest"});
    EXPECT_EQ(after("400"), "night");
    EXPECT_EQ(after("401"), "day");
    settle();
    EXPECT_NE(must({"shot", "--digest"}), dark);
    EXPECT_EQ(after("200"), "day");
    EXPECT_EQ(after("199"), "night");
    must({"vehicle", "daynight", "day"});
    EXPECT_EQ(value("daynight"), "day");
    must({"theme", "night"});
    EXPECT_EQ(value("daynight"), "night");
}

TEST_F(VehicleRun, ADriveFromAFilePassesOnTheStoppedClock) {
    startManual();
    must({"vehicle", "drive",
          write("# seconds, km/h\ntime,speed,gear,light\n0,,drive,1000\n2,20,,\n\n4.5,60,,\n10,0,park,\n")});
    EXPECT_EQ(value("gear"), "drive");
    EXPECT_EQ(value("daynight"), "day");
    EXPECT_EQ(value("drive"), "on");
    must({"clock", "advance", "1999"});
    EXPECT_EQ(value("speed"), "0");
    must({"clock", "advance", "1"});
    EXPECT_EQ(value("speed"), "20");
    must({"clock", "advance", "7000"});
    EXPECT_EQ(value("speed"), "60");
    EXPECT_EQ(value("restriction"), "2");
    must({"clock", "advance", "60000"});
    EXPECT_EQ(value("speed"), "0");
    EXPECT_EQ(value("restriction"), "0");
    EXPECT_EQ(value("drive"), "off");
    EXPECT_THAT(mustFail({"vehicle", "drive", "--stop"}), HasSubstr("no drive runs"));
}

TEST_F(VehicleRun, ADriveFromAFilePassesInRealTime) {
    startBench({"--no-web", "--no-disc-service"});
    must({"vehicle", "drive", write("time,speed\r\n0,10\r\n2,20\r\n3,30\r\n"), "--speed", "10"});
    must({"expect", "pps.zelmar/vehicle/status.speed", "==", "30", "within", "20000"});
    must({"expect", "pps.zelmar/vehicle/status.drive", "==", "off", "within", "20000"});
    must({"vehicle", "drive", write("time,speed\n0,10\n2000,20\n")});
    must({"vehicle", "drive", "--stop"});
    EXPECT_EQ(value("drive"), "off");
    EXPECT_EQ(value("speed"), "10");
}

TEST_F(VehicleRun, WhatIsWrongInASignalFileIsNamedWithItsLine) {
    startManual();
    const struct {
        const char* text;
        const char* why;
    } files[] = {
        {"", ": there are no signals in it"},
        {"time,speed\n", ": there are no signals in it"},
        {"speed,time\n1,2\n", ":1: the first column is \"speed\" and not \"time\""},
        {"time,sped\n1,2\n", ":1: there is no signal \"sped\"; did you mean \"speed\"?"},
        {"time,speed\n1,2\n1,2,3\n", ":3: 3 fields where the first line names 2"},
        {"time,speed\n1,fast\n", ":2: speed \"fast\" is not km/h, 0 to 400"},
        {"time,gear\n\n1,pak\n", ":3: there is no gear \"pak\"; did you mean \"park\"?"},
        {"time,speed\n5,1\n4,2\n", ":3: the time 4 lies before"},
        {"time,speed\nx,2\n", ":2: the time \"x\" is not seconds"},
    };
    for (const auto& [text, why] : files) {
        EXPECT_THAT(mustFail({"vehicle", "drive", write(text)}), HasSubstr(folder + "/drive.csv" + why))
            << text;
    }
    EXPECT_THAT(mustFail({"vehicle", "drive", folder + "/none"}), HasSubstr("No such file"));
    EXPECT_EQ(value("speed"), "0") << "nothing of a wrong file is played";
    EXPECT_THAT(mustFail({"vehicle", "speed", "401"}), HasSubstr("speed \"401\" is not km/h, 0 to 400"));
    EXPECT_THAT(mustFail({"vehicle", "sped", "4"}, 2), HasSubstr("did you mean \"speed\"?"));
    EXPECT_THAT(mustFail({"vehicle", "gear", "fast"}, 2), HasSubstr("usage: zmctl vehicle"));
}

} // namespace zm::test
