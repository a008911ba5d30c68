#include "platform/task_pool.h"

#include <gtest/gtest.h>

#include <atomic>

namespace {

TEST(TaskPool, GivesEveryTaskItsOwnResult) {
    TaskPool pool(4);
    std::vector<std::future<int>> results;
    for (int i = 0; i < 200; ++i) results.push_back(pool.run([i] { return i * i; }));
    for (int i = 0; i < 200; ++i) EXPECT_EQ(results[static_cast<std::size_t>(i)].get(), i * i);
}

TEST(TaskPool, BeginsTasksInTheirOrder) {
    TaskPool pool(1);
    std::vector<int> order;
    std::vector<std::future<void>> done;
    for (int i = 0; i < 50; ++i) done.push_back(pool.run([i, &order] { order.push_back(i); }));
    for (auto& task : done) task.get();
    for (int i = 0; i < 50; ++i) EXPECT_EQ(order[static_cast<std::size_t>(i)], i);
}

TEST(TaskPool, RunsTasksBesideEachOther) {
    TaskPool pool(2);
    std::promise<void> opened;
    auto waiting = pool.run([gate = opened.get_future().share()] { gate.wait(); });
    auto other = pool.run([&opened] { opened.set_value(); });
    other.get();
    waiting.get();  // would hang on one thread
}

TEST(TaskPool, DropsWhatHasNotBegunWhenItEnds) {
    std::atomic<int> begun = 0;
    std::promise<void> opened;
    std::future<void> last;
    {
        TaskPool pool(1);
        std::promise<void> running;
        auto first = pool.run([&, gate = opened.get_future().share()] {
            ++begun;
            running.set_value();
            gate.wait();
        });
        running.get_future().wait();
        last = pool.run([&] { ++begun; });
        std::thread opener([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            opened.set_value();
        });
        opener.detach();
    }
    EXPECT_EQ(begun, 1);
    EXPECT_THROW(last.get(), std::future_error);
}

}  // namespace
