#include "platform/task_pool.h"

#include <algorithm>

TaskPool::TaskPool(unsigned threadCount)
    : threadCount_(threadCount != 0 ? threadCount
                                    : std::max(1u, std::thread::hardware_concurrency())) {}

TaskPool::~TaskPool() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
        tasks_.clear();
    }
    wake_.notify_all();
    for (std::thread& thread : threads_) thread.join();
}

void TaskPool::add(std::function<void()> task) {
    {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
    }
    if (threads_.size() < threadCount_) threads_.emplace_back([this] { work(); });
    wake_.notify_one();
}

void TaskPool::work() {
    for (;;) {
        std::function<void()> task;
        {
            std::unique_lock lock(mutex_);
            wake_.wait(lock, [this] { return ending_ || !tasks_.empty(); });
            if (ending_) return;
            task = std::move(tasks_.front());
            tasks_.pop_front();
        }
        task();
    }
}
