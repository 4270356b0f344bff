// The scratch integers of numbers, and when they go.
//
// They are a thread's own, and numbers are used to its very end: by destructors of thread-local
// objects, on the main thread by exit handlers and destructors of static objects. So what names the
// integers is never destroyed, and the integers themselves are made again after they went.
#include <pthread.h>

#include <memory>
#include <new>

#include "vorn/terms/qnumber.h"

namespace vorn {

constinit thread_local QNumber::Scratch QNumber::gmp_tmp;

/// Frees the integers of a thread: among its thread-local objects, or after the last of them if one
/// of those computes again. What the main thread computes so late is at exit, and stays.
struct QNumber::Scratch::Release {
  ~Release() {
    is_over = true;
    run(gmp_tmp.integers);
  }
  static void run(void* integers) {
    delete static_cast<Integers*>(integers);
    gmp_tmp.integers = nullptr;
  }
  static pthread_key_t make_key() {
    pthread_key_t key{};
    if (pthread_key_create(&key, run) != 0) throw std::bad_alloc();
    return key;
  }

  static constinit thread_local bool is_over;  // whether the thread-local object is gone
};

constinit thread_local bool QNumber::Scratch::Release::is_over = false;

void QNumber::Scratch::make() {
  auto made = std::make_unique<Integers>();
  if (Release::is_over) {
    static const pthread_key_t key = Release::make_key();
    if (pthread_setspecific(key, made.get()) != 0) throw std::bad_alloc();
  } else {
    static thread_local const Release release;
    static_cast<void>(release);
  }
  integers = made.release();
}

}  // namespace vorn
