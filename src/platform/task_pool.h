// A few threads that run tasks in the order in which they were given. Made where many files are
// decoded at once, gone with the last of them. The pool itself is used from one thread.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <type_traits>
#include <vector>

class TaskPool {
  public:
    // Threads start with the first task; `threadCount` 0: as many as the machine has cores.
    explicit TaskPool(unsigned threadCount = 0);
    // Waits for the tasks that are running; those that have not begun are dropped, and whoever
    // waits for one gets a broken promise.
    ~TaskPool();
    TaskPool(const TaskPool&) = delete;
    TaskPool& operator=(const TaskPool&) = delete;

    unsigned threadCount() const { return threadCount_; }

    // The task must not throw.
    template <typename Task>
    std::future<std::invoke_result_t<Task>> run(Task task) {
        using Result = std::invoke_result_t<Task>;
        auto packaged = std::make_shared<std::packaged_task<Result()>>(std::move(task));
        std::future<Result> result = packaged->get_future();
        add([packaged] { (*packaged)(); });
        return result;
    }

  private:
    void add(std::function<void()> task);
    void work();

    unsigned threadCount_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> tasks_;
    bool ending_ = false;
    std::vector<std::thread> threads_;
};
