// Makes allocations fail: operator new and posix_memalign of the whole process, also in libraries that it loads.
#ifndef ORVANEL_TESTS_SUPPORT_FAILING_NEW_H
#define ORVANEL_TESTS_SUPPORT_FAILING_NEW_H

namespace orvanel::test {

// While it lives, the first `good` allocations succeed and all others fail.
class FailingNew {
 public:
  explicit FailingNew(long good);
  FailingNew(const FailingNew&) = delete;
  FailingNew& operator=(const FailingNew&) = delete;
  ~FailingNew();

  // Whether any has been refused.
  bool HasFailed() const;
};

}  // namespace orvanel::test

#endif  // ORVANEL_TESTS_SUPPORT_FAILING_NEW_H
