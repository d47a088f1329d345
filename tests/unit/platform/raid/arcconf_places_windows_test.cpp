#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/raid/arcconf_places.h"

namespace Vantix::raid {
namespace {

using testing::EndsWith;

TEST(ArcconfPlacesWindowsTest, ProgramIsLookedUpByNameAndInTheMakersFolders) {
    const std::vector<std::string> places = ArcconfPlaces();
    ASSERT_FALSE(places.empty());
    EXPECT_EQ(places.front(), "arcconf");
    EXPECT_THAT(places,
                testing::Contains(EndsWith("\\Adaptec\\maxView Storage Manager\\arcconf.exe")));
    EXPECT_TRUE(std::all_of(places.begin() + 1, places.end(), [](const std::string& place) {
        return place.size() > 3 && place[1] == ':' && place[2] == '\\';
    }));
}

}  // namespace
}  // namespace Vantix::raid
