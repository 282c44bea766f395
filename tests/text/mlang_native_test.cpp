// Where the platform has no multi-language object.
#include <gtest/gtest.h>

#include "text/mlang.h"

namespace marklet {
namespace {

TEST(MLangWithoutAnObject, RaisesThatTheClassIsNotRegistered) {
  try {
    const MLang mlang;
    FAIL() << "there is one";
  } catch (const MultiLanguageError& error) {
    EXPECT_EQ(error.Code(), static_cast<Long>(0x80040154));
    EXPECT_STREQ(error.what(), "the multi-language object answered -2147221164");
  }
}

}  // namespace
}  // namespace marklet
