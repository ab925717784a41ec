#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "encoding/RegistryState.h"
#include "encoding/TranscodingCheck.h"

namespace {

using namespace MCMEM_NAMESPACE;
using namespace encoding_test;

// Code pages that no other conversion of the process has used: the threads meet while what is
// remembered about them is found out.
TEST(TranscodingThreads, OneDefaultConverterServesSeveral) {
  for (const char* codePage : {"932", "1251", "GB18030", "ISO-2022-JP"}) {
    const DefaultCodePage shared(codePage);
    const U16 wide = {'a', 0x416, 0x436, 'z'};
    std::atomic<int> wrong{0};
    const auto work = [&] {
      for (int i = 0; i < 200; ++i) {
        std::string bytes;
        std::string utf8;
        U16 back;
        const bool isRight = TULKMBU16ToCodePage(nullptr, bytes, wide) == 0 &&
                             TULKMBCodePageToU8(nullptr, utf8, bytes) == 0 &&
                             utf8 == "a\xD0\x96\xD0\xB6z" &&
                             TULKMBU8ToCodePage(nullptr, bytes, utf8) == 0 &&
                             TULKMBCodePageToU16(nullptr, back, bytes) == 0 && back == wide &&
                             TULKMBCodePageToU16(nullptr, back, "plain") == 0;
        if (!isRight) ++wrong;
      }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) threads.emplace_back(work);
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(wrong, 0) << codePage;
  }
}

}  // namespace
