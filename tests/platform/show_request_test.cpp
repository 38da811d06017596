// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>

#include <memory>

#include "platform/linux/show_socket.h"
#include "platform/linux/unix_show_listener.h"
#include "platform/linux/unix_show_request.h"
#include "support/toolbox_fixture.h"

namespace vantrell::test {
namespace {

namespace fs = std::filesystem;
using Answer = ShowRequest::Answer;

class ShowRequestTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(listener.listen(data, [this] { ++shown; }));
    }

    /// As the event loop would: serves as long as there is something to do.
    void serveAll() {
        pollfd ready{listener.descriptor(), POLLIN, 0};
        for (int turn = 0; turn < 1000 && ::poll(&ready, 1, 0) == 1; ++turn) listener.serve();
        EXPECT_EQ(::poll(&ready, 1, 0), 0) << "it would turn for ever";
    }
    UniqueFd connection() const {
        const UniqueFd open(::open(data.c_str(), O_PATH | O_CLOEXEC));
        UniqueFd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
        const sockaddr_un address = showSocketIn(open.get());
        EXPECT_EQ(::connect(socket.get(), asSocketAddress(address), sizeof address), 0);
        return socket;
    }
    static void say(const UniqueFd& socket, std::string_view text) {
        EXPECT_EQ(::send(socket.get(), text.data(), text.size(), MSG_NOSIGNAL), static_cast<ssize_t>(text.size()));
    }
    /// What came, until the other end hung up or has nothing more to say.
    static std::string heardFrom(const UniqueFd& socket) {
        char bytes[64];
        const ssize_t got = ::recv(socket.get(), bytes, sizeof bytes, MSG_DONTWAIT);
        if (got >= 0) return {bytes, static_cast<std::size_t>(got)};
        return errno == EAGAIN ? "(waits)" : "";
    }

    TemporaryFolder folder;
    // Longer than a socket's address can be.
    std::string data = folder.makeFolder(std::string(120, 'd') + "/" + std::string(120, 'e'));
    int shown = 0;
    UnixShowListener listener;
};

TEST_F(ShowRequestTest, ALineMayComeInPieces) {
    const UniqueFd caller = connection();
    for (const char* piece : {"s", "ho", "w", "\n"}) {
        EXPECT_EQ(heardFrom(caller), "(waits)");
        say(caller, piece);
        serveAll();
    }
    EXPECT_EQ(heardFrom(caller), "shown\n");
    EXPECT_TRUE(someoneListensIn(data));
    serveAll();
    EXPECT_EQ(shown, 1);
}

TEST_F(ShowRequestTest, AFullQueueMeansPatience) {
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
}

TEST_F(ShowRequestTest, NobodyListensBeforeOrAfter) {
    const std::string elsewhere = folder.makeFolder("elsewhere");
    UnixShowListener other;
    {
        UnixShowListener first;
        ASSERT_TRUE(first.listen(elsewhere, [] {}));
    }
    EXPECT_EQ(UnixShowRequest(elsewhere).answer(), Answer::notRunning);
    EXPECT_EQ(UnixShowRequest(folder / "missing").answer(), Answer::notRunning);
    EXPECT_FALSE(someoneListensIn(elsewhere));
}

TEST_F(ShowRequestTest, ALeftOverSocketIsReplacedAndAFileIsNot) {
    // A second listener takes the name over, as after a kill; the first one must not take it away when it goes.
    {
        UnixShowListener killed;
        ASSERT_TRUE(killed.listen(data, [] {}));
        ASSERT_TRUE(listener.listen(data, [this] { ++shown; }));
    }
    UnixShowRequest request(data);
    EXPECT_EQ(request.answer(), Answer::pending);
    serveAll();
    EXPECT_EQ(request.answer(), Answer::shown);
    const std::string elsewhere = folder.makeFolder("elsewhere");
    writeFile(elsewhere + "/show.sock", "mine");
    UnixShowListener other;
    EXPECT_FALSE(other.listen(elsewhere, [] {}));
    EXPECT_EQ(other.descriptor(), -1);
    EXPECT_EQ(readFile(elsewhere + "/show.sock"), "mine");
}

}  // namespace
}  // namespace vantrell::test
