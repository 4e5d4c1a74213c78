// Work on many threads, with results in the order of the tasks.
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

// A ring of tasks on their way: the calling thread fills it at one end and empties it at the other, the workers take
// from between. So memory is bounded by the ring, and one slow task holds up no more than that.
template <class Task, class Result>
class InOrder {
 public:
  using Work = std::function<Result(Task&)>;

  // One worker for each element of `work`.
  InOrder(std::vector<Work> work, std::size_t most) : ring_(most) {
    try {
      for (Work& its : work) threads_.emplace_back([this, its = std::move(its)] { Run(its); });
    } catch (const std::system_error&) {  // no more threads to be had
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

  // Runs to the end of the tasks. What next, the work or take throw ends it; the work's comes when its turn is.
  //   next  makes a task; false at the end
  //   take  gets the results, in the order of the tasks
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
  std::size_t first_ = 0;    // to be taken next; the calling thread's alone
  std::size_t claimed_ = 0;  // to be worked on next
  std::size_t end_ = 0;      // to be given next; written by the calling thread alone
  bool stopped_ = false;
  std::vector<std::thread> threads_;
};

}  // namespace orvanel::evaluation

#endif  // ORVANEL_EVALUATION_IN_ORDER_H
