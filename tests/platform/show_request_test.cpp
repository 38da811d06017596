// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <poll.h>

#include <memory>

#include "platform/linux/unix_show_listener.h"
#include "platform/linux/unix_show_request.h"
#include "rig/temporary_folder.h"

namespace vantrell::test {
namespace {

using Answer = ShowRequest::Answer;

class ShowRequestTest : public testing::Test {
protected:
    bool listen(UnixShowListener& one) {
        return one.listen(data, [this] { ++shown; });
    }
    /// As the event loop would: serves as long as there is something to do.
    void serveAll() {
        pollfd ready{static_cast<int>(listener.handle()), POLLIN, 0};
        for (int turn = 0; turn < 1000 && ::poll(&ready, 1, 0) == 1; ++turn) listener.serve();
        EXPECT_EQ(::poll(&ready, 1, 0), 0) << "it would turn for ever";
    }

    TemporaryFolder folder;
    // Longer than a socket's address can be.
    std::string data = folder.makeFolder(std::string(120, 'd') + "/" + std::string(120, 'e'));
    int shown = 0;
    UnixShowListener listener;
};

TEST_F(ShowRequestTest, AFullQueueMeansPatience) {
    ASSERT_TRUE(listen(listener));
    std::vector<std::unique_ptr<UnixShowRequest>> requests;
    for (int count = 0; count < 200; ++count) {
        requests.push_back(std::make_unique<UnixShowRequest>(data));
        EXPECT_EQ(requests.back()->answer(), Answer::pending);
    }
    for (int round = 0; round < 20; ++round) {
        serveAll();
        for (auto& request : requests) static_cast<void>(request->answer());
    }
    EXPECT_EQ(shown, 200);
    EXPECT_EQ(requests.back()->answer(), Answer::shown);
}

TEST_F(ShowRequestTest, ALeftOverSocketIsReplacedAndNotTakenAwayByItsFirstOwner) {
    {
        UnixShowListener killed;
        ASSERT_TRUE(listen(killed) && listen(listener));
    }
    UnixShowRequest request(data);
    EXPECT_EQ(request.answer(), Answer::pending);
    serveAll();
    EXPECT_EQ(request.answer(), Answer::shown);
}

}  // namespace
}  // namespace vantrell::test
