#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/raid/arcconf_places.h"

namespace Vantix::raid {
namespace {

TEST(ArcconfPlacesPosixTest, ProgramIsLookedUpByNameAndInItsFolder) {
    EXPECT_THAT(ArcconfPlaces(), testing::ElementsAre("arcconf", "/usr/Arcconf/arcconf"));
}

}  // namespace
}  // namespace Vantix::raid
