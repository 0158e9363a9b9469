#pragma once

#include <chrono>

#include "com_values_windows_p.h"

namespace quillmate::host {

/// Makes the calling thread fit for automation for as long as it lives: a single-threaded apartment, in which an
/// outgoing call that is not answered within `limit` is given up (RPC_E_CALL_CANCELED). A thread that belongs to a
/// multi-threaded apartment stays there, and its calls wait.
class ComApartment {
 public:
  explicit ComApartment(std::chrono::milliseconds limit);
  ~ComApartment();
  ComApartment(const ComApartment&) = delete;
  ComApartment& operator=(const ComApartment&) = delete;

 private:
  DWORD thread_;
  bool initialized_;
  bool filtering_ = false;
  PTP_TIMER timer_ = nullptr;
  ComPointer<IMessageFilter> earlierFilter_;
};

}  // namespace quillmate::host
