// SPDX-License-Identifier: MIT
//
// How long the whole program (real window, offscreen) takes to carry files, beside what a user would use instead, in
// one run on the same files; and whether its window lives meanwhile.
//
//   bench_carry [FOLDER] [SMALL FILES] [LARGE GIB]      defaults: a temporary folder, 20000, 4

#include <QApplication>
#include <QLabel>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <set>
#include <string>

#include "app/program.h"
#include "bench/heart_beat.h"
#include "platform/linux/system_clock.h"
#include "platform/qt/qt_timers.h"
#include "rig/profile.h"

namespace fs = std::filesystem;
using vantrell::test::HeartBeat;
using vantrell::test::Profile;
using vantrell::test::residentKiB;

namespace {

constexpr char kKey[] = "7365637265740000000000000000000000000000000000000000000000000000";  // "secret"

void makeFile(const fs::path& path, std::uint64_t size) {
    static std::mt19937_64 dice(1);
    std::ofstream file(path, std::ios::binary);
    std::string block(std::min<std::uint64_t>(size, 1 << 20), '\0');
    for (std::uint64_t written = 0; written < size; written += block.size()) {
        for (std::size_t i = 0; i + 8 <= block.size(); i += 8) *reinterpret_cast<std::uint64_t*>(&block[i]) = dice();
        file.write(block.data(), static_cast<std::streamsize>(std::min<std::uint64_t>(block.size(), size - written)));
    }
}

double secondsOf(const std::string& command) {
    const auto begin = std::chrono::steady_clock::now();
    if (std::system(command.c_str()) != 0) std::printf("failed: %s\n", command.c_str());
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

std::string inQuotes(const fs::path& path) { return "'" + path.string() + "'"; }

double secondsOfCp(const Profile& profile, const std::string& after) {
    const std::string copy = inQuotes(fs::path(profile.root) / "copy");
    const double seconds = secondsOf("cp -r " + inQuotes(profile.in) + " " + copy + after);
    (void)secondsOf("rm -rf " + copy + "; sync");
    return seconds;
}

double secondsOfScript(const Profile& profile, const fs::path& sample) {
    const std::string out = inQuotes(fs::path(profile.root) / "script");
    const double seconds =
        secondsOf("mkdir " + out + "; for f in " + inQuotes(sample) + "/*; do openssl enc -aes-256-ecb -K " + kKey +
                  " -in \"$f\" -out " + out + "/\"${f##*/}\".enc; done");
    (void)secondsOf("rm -rf " + out + "; sync");
    return seconds;
}

Profile madeProfile(const fs::path& root) {
    Profile profile(root);
    profile.settings.RunContinuallyAtStartup = true;
    return profile;
}

struct Figures {
    double seconds = 0;
    qint64 longestGapMs = 0;
    std::int64_t grownKiB = 0;
    std::size_t clockTexts = 0;
};

// Watches from within the event loop: measures the longest time in which no event was handled, and how much memory grew
// after the beginning.
Figures runProgram(std::uint64_t files, std::uint64_t settleAfter) {
    const vantrell::SystemClock clock{};
    vantrell::QtTimers timers;
    vantrell::Program program(clock, timers);
    Figures figures;
    if (!program.start()) return figures;
    std::int64_t settled = 0;
    std::set<QString> clockTexts;
    const auto* processed = program.window().findChild<QLabel*>(QStringLiteral("lblCurNumFilesProcessed"));
    const auto* clockLabel = program.window().findChild<QLabel*>(QStringLiteral("lblcurTime"));
    const auto begin = std::chrono::steady_clock::now();
    const HeartBeat heart([&] {
        const std::uint64_t count = processed->text().toULongLong();
        clockTexts.insert(clockLabel->text());
        if (settled == 0 && count >= settleAfter) settled = residentKiB();
        if (settled != 0) figures.grownKiB = std::max(figures.grownKiB, residentKiB() - settled);
        if (!program.engine().state.PassInProgress && count >= files) QCoreApplication::exit(0);
    });
    QApplication::exec();
    figures.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    figures.longestGapMs = heart.longestGapMs();
    figures.clockTexts = clockTexts.size();
    return figures;
}

void print(const char* what, double seconds, const Figures& ours) {
    std::printf("  %-42s %8.2f s   ours takes %.2f times as long\n", what, seconds, ours.seconds / seconds);
}

void print(const Figures& ours) {
    std::printf("  %-42s %8.2f s   longest gap %lld ms, memory grew by %lld KiB, %zu clock texts\n",
                "ours: encrypted, flushed, moved, logged", ours.seconds, static_cast<long long>(ours.longestGapMs),
                static_cast<long long>(ours.grownKiB), ours.clockTexts);
}

void small(const fs::path& root, std::uint64_t count) {
    const Profile profile = madeProfile(root / "small");
    const fs::path sample = fs::path(profile.root) / "sample";
    fs::create_directories(sample);
    constexpr std::uint64_t kSample = 500;
    for (std::uint64_t i = 0; i < count; ++i) makeFile(fs::path(profile.in) / ("f" + std::to_string(i)), 4096);
    for (std::uint64_t i = 0; i < kSample; ++i) makeFile(sample / ("f" + std::to_string(i)), 4096);
    (void)secondsOf("sync");
    const double cp = secondsOfCp(profile, "");
    const double cpSync = secondsOfCp(profile, " && sync");
    const double script = secondsOfScript(profile, sample) * static_cast<double>(count) / kSample;
    profile.use();
    const Figures ours = runProgram(count, std::min<std::uint64_t>(1000, count / 2));
    std::printf("%llu files of 4 KiB\n", static_cast<unsigned long long>(count));
    print(ours);
    print("cp -r (nothing flushed)", cp, ours);
    print("cp -r, then sync", cpSync, ours);
    print("openssl in a shell loop (from 500 files)", script, ours);
}

void large(const fs::path& root, std::uint64_t gib) {
    const Profile profile = madeProfile(root / "large");
    makeFile(fs::path(profile.in) / "a warm-up", 4096);
    makeFile(fs::path(profile.in) / "large", gib << 30);
    (void)secondsOf("sync");
    const double cp = secondsOfCp(profile, "");
    const double cpSync = secondsOfCp(profile, " && sync");
    profile.use();
    const Figures ours = runProgram(2, 1);
    std::printf("one file of %llu GiB\n", static_cast<unsigned long long>(gib));
    print(ours);
    print("cp -r (nothing flushed)", cp, ours);
    print("cp -r, then sync", cpSync, ours);
}

}  // namespace

int main(int argc, char** argv) try {
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    const QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const fs::path root = argc > 1 ? fs::path(argv[1]) : fs::temp_directory_path() / "vantrell-bench";
    fs::remove_all(root);
    small(root, argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 20000);
    large(root, argc > 3 ? std::strtoull(argv[3], nullptr, 10) : 4);
    fs::remove_all(root);
    return 0;
} catch (const std::exception& exception) {
    std::fprintf(stderr, "%s\n", exception.what());
    return 1;
}
