// Runs tasks on many threads and returns the results in the order of the tasks.
#ifndef ORVANEL_EVALUATION_IN_ORDER_H
#define ORVANEL_EVALUATION_IN_ORDER_H

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "base/layers.h"
#include "evaluation/errors.h"

namespace orvanel::evaluation {

// A ring buffer of tasks in flight. The calling thread adds tasks at its end and takes results from its beginning; the
// workers process the tasks between. So memory is bounded, and a slow task delays at most the tasks in the ring.
template <class Task, class Result>
class InOrder {
 public:
  using Work = std::function<Result(Task&)>;

  // Starts one worker for each element of `work`.
  //   maxInFlight  places of the ring
  InOrder(std::vector<Work> work, std::size_t maxInFlight) : ring_(maxInFlight) {
    try {
      for (Work& its : work) threads_.emplace_back([this, its = std::move(its)] { Run(its); });
    } catch (const std::system_error&) {  // the system starts no more threads
      Stop();
      throw TooFewThreads(threads_.size());
    } catch (...) {
      Stop();
      throw;
    }
  }
  InOrder(const InOrder&) = delete;
  InOrder& operator=(const InOrder&) = delete;
  ~InOrder() { Stop(); }

  // Runs all tasks. An exception of `next`, `take` or the work ends the run; that of the work is thrown in the place of
  // its result.
  //   next  makes a task; false at the end
  //   take  receives the results in the order of the tasks
  void Run(const std::function<bool(Task&)>& next, const std::function<void(Result&)>& take) {
    for (bool more = true;;) {
      while (more && end_ - first_ < ring_.size()) {
        Place& place = ring_[end_ % ring_.size()];
        more = next(place.task);
        if (more) Give(place);
      }
      if (first_ == end_) return;
      Place& place = ring_[first_ % ring_.size()];
      {
        std::unique_lock lock(mutex_);
        done_.wait(lock, [&place] { return place.done; });
      }
      if (place.failure) std::rethrow_exception(place.failure);
      take(place.result);
      ++first_;
    }
  }

 private:
  void Stop() {
    {
      const std::lock_guard lock(mutex_);
      stopped_ = true;
    }
    given_.notify_all();
    for (std::thread& thread : threads_) thread.join();
  }

  struct Place {
    Task task{};
    Result result{};
    std::exception_ptr failure;
    bool done = false;
  };

  void Give(Place& place) {
    {
      const std::lock_guard lock(mutex_);
      place.done = false;
      ++end_;
    }
    given_.notify_one();
  }

  void Run(const Work& work) {
    for (;;) {
      Place* place = nullptr;
      {
        std::unique_lock lock(mutex_);
        given_.wait(lock, [this] { return stopped_ || claimed_ < end_; });
        if (stopped_) return;
        place = &ring_[claimed_++ % ring_.size()];
      }
      try {
        place->result = work(place->task);
      } catch (...) {
        place->failure = std::current_exception();
      }
      {
        const std::lock_guard lock(mutex_);
        place->done = true;
      }
      done_.notify_one();
    }
  }

  std::vector<Place> ring_;
  std::mutex mutex_;
  std::condition_variable given_, done_;
  std::size_t first_ = 0;    // the next result to take; used only by the calling thread
  std::size_t claimed_ = 0;  // the next task to process
  std::size_t end_ = 0;      // the next task to add; written only by the calling thread
  bool stopped_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_IN_ORDER_H
