// Triangulations know nothing of each other: not in several threads, not in one, not through the places in memory.
#include "tests/output/OutputTestSupport.h"
#include "tests/support/MeshCheck.h"
#include "tests/trust/WholeProgram.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

using namespace ZELK_QUOR2D;

namespace
{

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kOnlyHeap = true;
#else
constexpr bool kOnlyHeap = false;
#endif

// Leaves holes of many sizes in the heap, so that blocks come from all over the place.
class ScatteredHeap
{
public:
    explicit ScatteredHeap(std::uint64_t seed)
    {
        test::Uniform u(seed);
        for (int i = 0; i < 2000; ++i)
            vBlocks.push_back(std::make_unique<char[]>(static_cast<std::size_t>(1 + u.below(1 << u.below(19)))));
        for (auto& pBlock : vBlocks)
            if (u.below(2) == 0)
                pBlock.reset();
    }

private:
    std::vector<std::unique_ptr<char[]>> vBlocks;
};

} // namespace

// Faults: a scratch list, a counter or a mode that all objects share without a lock. Tells most under ThreadSanitizer.
TEST(Independence, ThreadsWithTheirOwnTriangulations)
{
    constexpr std::uint64_t kNumThreads = 4;
    const TemporaryDirectory directory;
    testing::internal::CaptureStdout(); // by the descriptor: the stream stays the one that all threads may use
    std::vector<std::unique_ptr<test::WholeProgram>> vPrograms;
    for (std::uint64_t i = 0; i < kNumThreads; ++i)
        vPrograms.push_back(std::make_unique<test::WholeProgram>(i, directory.path(std::to_string(i))));
    std::vector<std::thread> vThreads;
    for (auto& pProgram : vPrograms)
        vThreads.emplace_back([&pProgram] {
            pProgram->run();
            test::WholeProgram shortLived(9, "/dev/null", 50); // made and gone in the thread
            shortLived.step(0);
            timer("thread");
        });
    for (std::thread& thread : vThreads)
        thread.join();
    testing::internal::GetCapturedStdout();
    for (std::uint64_t i = 0; i < kNumThreads; ++i) {
        EXPECT_TRUE(vPrograms[i]->triangulation().checkValidity(false, "thread"));
        CapturedOutput output;
        test::WholeProgram alone(i, "/dev/null");
        alone.run();
        EXPECT_TRUE(kOnlyHeap || vPrograms[i]->mesh() == alone.mesh()) << i;
    }
}

// Fault: state that belongs to the process instead of the object.
TEST(Independence, TwoObjectsInOneThread)
{
    if (kOnlyHeap)
        GTEST_SKIP() << "the address sanitizer places memory on its own";
    CapturedOutput output;
    test::WholeProgram first(1, "/dev/null"), second(2, "/dev/null"), firstAlone(1, "/dev/null"),
        secondAlone(2, "/dev/null");
    for (test::WholeProgram* pAlone : {&firstAlone, &secondAlone})
        for (int i = 0; i < test::WholeProgram::kNumSteps; ++i) {
            std::srand(static_cast<unsigned int>(i));
            pAlone->step(i);
        }
    for (int i = 0; i < test::WholeProgram::kNumSteps; ++i)
        for (test::WholeProgram* pMixed : {&first, &second}) {
            std::srand(static_cast<unsigned int>(i));
            pMixed->step(i);
        }
    EXPECT_TRUE(first.mesh() == firstAlone.mesh());
    EXPECT_TRUE(second.mesh() == secondAlone.mesh());
}

// Fault: an order by address that decides where a vertex goes.
TEST(Independence, PlacesInMemoryDoNotMatter)
{
    if (kOnlyHeap)
        GTEST_SKIP() << "the address sanitizer places memory on its own";
    CapturedOutput output;
    std::srand(1);
    test::WholeProgram reference(3, "/dev/null", 3000);
    reference.run();
    const test::MeshSet expected = reference.mesh();
    for (std::uint64_t seed = 0; seed < 8; ++seed) {
        const ScatteredHeap heap(seed);
        std::srand(1);
        test::WholeProgram program(3, "/dev/null", 3000);
        program.run();
        EXPECT_TRUE(program.mesh() == expected) << seed;
    }
}
