#ifndef VANLAYOUT_ORDEREDWORK_H
#define VANLAYOUT_ORDEREDWORK_H

#include <algorithm>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

/// Does numbered pieces of work on all processors and takes their results in order, on the calling thread. Only a few
/// results are kept at a time, however many pieces there are.
template <typename Result> class OrderedWork
{
public:
    /// Does the work with this number, from 0. It is called on several threads at once and must not throw.
    using Work = std::function<Result(int number)>;
    /// Takes the results, in the order of their numbers.
    using Take = std::function<void(int number, Result result)>;

    OrderedWork(int workCount, Work workFunction)
        : count(workCount)
        , work(std::move(workFunction))
        , results(size_t(resultsPerThread) * threadCount())
    {
    }
    ~OrderedWork()
    {
        {
            const std::lock_guard<std::mutex> lock(mutex);
            isOver = true;
        }
        hasRoom.notify_all();
        for (std::thread &thread : threads)
            thread.join();
    }
    OrderedWork(const OrderedWork &) = delete;
    OrderedWork &operator=(const OrderedWork &) = delete;

    /// Must be called once.
    void run(const Take &take)
    {
        const bool hasThreads = count > 1 && startThreads();
        for (int i = 0; i < count; ++i)
            take(i, hasThreads ? waitFor(i) : work(i));
    }

private:
    static constexpr int resultsPerThread = 4;

    static unsigned threadCount() { return std::max(1U, std::thread::hardware_concurrency()); }

    // Where the system refuses further threads, the others do the work.
    bool startThreads()
    {
        const auto wanted = std::min(size_t(count), size_t(threadCount()));
        threads.reserve(wanted);
        try {
            while (threads.size() < wanted)
                threads.emplace_back([this] { workUntilOver(); });
        } catch (const std::system_error &) {
            return !threads.empty();
        }
        return true;
    }
    void workUntilOver()
    {
        std::unique_lock<std::mutex> lock(mutex);
        for (;;) {
            hasRoom.wait(lock, [this] { return isOver || next == count || next - taken < int(results.size()); });
            if (isOver || next == count)
                return;
            const int number = next++;
            lock.unlock();
            Result result = work(number);
            lock.lock();
            placeOf(number) = std::move(result);
            hasResult.notify_one();
        }
    }
    Result waitFor(int number)
    {
        std::unique_lock<std::mutex> lock(mutex);
        hasResult.wait(lock, [&] { return placeOf(number).has_value(); });
        Result result = std::move(*placeOf(number));
        placeOf(number).reset();
        ++taken;
        lock.unlock();
        hasRoom.notify_all();
        return result;
    }
    std::optional<Result> &placeOf(int number) { return results[size_t(number) % results.size()]; }

    const int count;
    const Work work;
    std::mutex mutex;
    std::condition_variable hasRoom; // for a further result, or the work is over
    std::condition_variable hasResult;
    std::vector<std::optional<Result>> results; // as a ring
    int next = 0;                               // piece of work that nobody has begun
    int taken = 0;
    bool isOver = false;
    std::vector<std::thread> threads;
};

#endif
