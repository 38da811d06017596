// SPDX-License-Identifier: MIT
#include <QEventLoop>

#include "bench/heart_beat.h"
#include "whole/program_harness.h"

namespace vantrell::test {
namespace {

constexpr int kSmallFiles = 3000;
constexpr std::uint64_t kLarge = 1024 * kMiB;
// A disk with much to do for others may hold us up now and then; what blocks the loop for each file, or even each
// hundredth, shows all the same.
constexpr int kAttempts = 3;
constexpr int kMostHiccups = 3;

}  // namespace

class Responsiveness : public ProgramTest {
protected:
    /// One pass over everything, watched from within the event loop; how often that was held up for long.
    int gapsWhileCarrying(int total) {
        QEventLoop loop;
        const auto* processed = find<QLabel>("lblCurNumFilesProcessed");
        const int before = processed->text().toInt();
        pressStart(QMessageBox::Yes);
        const HeartBeat heart([&] {
            if (isIdle() && processed->text().toInt() - before >= total) loop.quit();
        });
        QTimer::singleShot(240'000, &loop, [&] { loop.exit(1); });
        EXPECT_EQ(loop.exec(), 0) << "not all was carried";
        return heart.noticedGaps();
    }
};

TEST_F(Responsiveness, LastsUnderThousandsOfFilesAndALargeOne) {
    profile.settings.OverwriteExistingFiles = true;
    startProgram();
    int gaps = kMostHiccups + 1;
    for (int attempt = 0; attempt < kAttempts && gaps > kMostHiccups && !HasFailure(); ++attempt) {
        for (int i = 0; i < kSmallFiles; ++i) drop("f" + std::to_string(i), std::string(4096, 'x'));
        makeSparseFile(profile.in + "/large", kLarge);
        gaps = gapsWhileCarrying(kSmallFiles + 1);
    }
    EXPECT_LE(gaps, kMostHiccups);
    EXPECT_EQ(std::filesystem::file_size(profile.out + "/large.enc"), kLarge + 16);
    EXPECT_EQ(countIn(profile.out), kSmallFiles + 1U);
}

}  // namespace vantrell::test
