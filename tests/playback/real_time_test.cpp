// The audio thread allocates nothing, waits for nothing and never calls the system. Proved on the real callback while
// every setter is hammered from other threads: allocations and mutex calls are counted by functions of this program's
// own that stand in front of the library's, system calls by the kernel, which kills a thread that makes one.

#include "playback/take_renderer.h"
#include "tests/playback/fake_take.h"

#include <atomic>
#include <thread>

#include <gtest/gtest.h>

// A sanitizer has functions of its own in these places, and calls the system as it likes.
#if defined(__linux__) && defined(__GLIBC__) && !defined(__SANITIZE_THREAD__) && !defined(__SANITIZE_ADDRESS__)

#include <dlfcn.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <pthread.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

thread_local bool watched = false;
std::atomic<int> allocations{0};
std::atomic<int> mutexCalls{0};

void count(std::atomic<int>& what) noexcept {
    if (watched) what.fetch_add(1, std::memory_order_relaxed);
}

}  // namespace

extern "C" {
// NOLINTBEGIN: the library's own names
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* __libc_memalign(std::size_t, std::size_t);
void __libc_free(void*);

void* malloc(std::size_t bytes) {
    count(allocations);
    return __libc_malloc(bytes);
}
void* calloc(std::size_t items, std::size_t bytes) {
    count(allocations);
    return __libc_calloc(items, bytes);
}
void* realloc(void* old, std::size_t bytes) {
    count(allocations);
    return __libc_realloc(old, bytes);
}
void* aligned_alloc(std::size_t alignment, std::size_t bytes) {
    count(allocations);
    return __libc_memalign(alignment, bytes);
}
void free(void* memory) {
    count(allocations);
    __libc_free(memory);
}
int pthread_mutex_lock(pthread_mutex_t* mutex) {
    using Lock = int (*)(pthread_mutex_t*);
    static std::atomic<Lock> real{nullptr};  // constant from the start: called before anything else is
    Lock lock = real.load(std::memory_order_relaxed);
    if (lock == nullptr) {
        lock = reinterpret_cast<Lock>(::dlsym(RTLD_NEXT, "pthread_mutex_lock"));
        real.store(lock, std::memory_order_relaxed);
    }
    count(mutexCalls);
    return lock(mutex);
}
// NOLINTEND
}

namespace dravik::test {
namespace {

/// Every setter, over and over, on the one thread that may call them.
void hammer(TakeRenderer& renderer, const std::atomic<bool>& stop) {
    MixerState mixer(8);
    LevelMeters meters;
    for (int i = 0; !stop.load(std::memory_order_relaxed); ++i) {
        mixer.setFader(i % 8, -(i % 40));
        mixer.toggleSolo(i % 8, true, "OR");
        renderer.setMix(mixPlan(mixer), 0.5F);
        renderer.setTransport({true, i % 4000, 5000, 10, 5000});
        renderer.setRange({true, 0, 4000 + i % 1000, 10, 5000});
        static_cast<void>(renderer.copyMeters(meters));
        renderer.resetMeters(i % 2 == 0);
        static_cast<void>(renderer.heard());
    }
}

TEST(RealTime, ACallbackAllocatesNothingAndTakesNoMutexWhileSettersAreHammered) {
    TakeRenderer renderer(takeOf(noise(8, 5000), true), 0);
    std::atomic<bool> stop{false};
    std::thread other([&] { hammer(renderer, stop); });
    std::vector<float> left(512);
    std::vector<float> right(512);
    watched = true;
    for (int block = 0; block < 20000; ++block)
        renderer.render(left, right);
    watched = false;
    stop = true;
    other.join();
    EXPECT_EQ(allocations, 0);
    EXPECT_EQ(mutexCalls, 0);

    watched = true;
    int* volatile number = new int;  // NOLINT: proves that the count counts
    delete number;
    static pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_mutex_lock(&mutex);
    watched = false;
    pthread_mutex_unlock(&mutex);
    EXPECT_EQ(allocations, 2);
    EXPECT_EQ(mutexCalls, 1);
}

/// What became of work done by a thread that the kernel lets do nothing but write its last word: that word, or 'k' when
/// it was killed for calling the system, or 's' when the kernel does not know the restriction.
template <typename Work>
char underRestriction(Work work) {
    int ends[2];
    if (::pipe(ends) != 0) return 's';
    const pid_t child = ::fork();
    if (child == 0) {
        work([&ends] { return ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_STRICT) == 0; },
             [&ends](char word) {
                 static_cast<void>(!::write(ends[1], &word, 1));
                 ::syscall(SYS_exit, 0);  // ends the thread; the parent ends the rest
             });
    }
    ::close(ends[1]);
    char said = 'k';
    if (::read(ends[0], &said, 1) != 1) said = 'k';
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(ends[0]);
    return said;
}

TEST(RealTime, ACallbackNeverCallsTheSystem) {
    const auto render = [](auto restrict, auto say) {
        TakeRenderer renderer(takeOf(noise(8, 5000), false), 0);
        std::atomic<bool> stop{false};
        std::thread other([&] { hammer(renderer, stop); });
        std::vector<float> left(512);
        std::vector<float> right(512);
        if (!restrict()) say('s');
        for (int block = 0; block < 20000; ++block)
            renderer.render(left, right);
        say('d');
        std::abort();
    };
    const char said = underRestriction(render);
    if (said == 's') GTEST_SKIP() << "This kernel does not restrict system calls.";
    EXPECT_EQ(said, 'd');
    EXPECT_EQ(underRestriction([](auto restrict, auto say) {
                  if (!restrict()) say('s');
                  ::syscall(SYS_getpid);
                  say('d');
              }),
              'k')
        << "the restriction restricts";
}

}  // namespace
}  // namespace dravik::test

#endif
