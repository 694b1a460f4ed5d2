// The outcome of an operation that can fail. A failed status carries what
// the program prints last (the text exactly as it is to appear on standard
// output) and the exit status the program then ends with; only the programs'
// mains print it.
#pragma once

#include <string>
#include <utility>

enum class StatusKind {
  Ok,
  CannotOpen,     // an input or output file cannot be opened
  InputError,     // a names, data or rule file that cannot be used
  Unsupported,    // an attribute kind the miner does not process
  WriteFailed,    // a file could not be written completely
  DividedByZero,  // a rule with a zero count met while exporting
};

class Status {
 public:
  Status() = default;
  Status(StatusKind kind, int exitStatus, std::string message)
      : kind_(kind), exit_(exitStatus), message_(std::move(message)) {}

  bool ok() const { return kind_ == StatusKind::Ok; }
  StatusKind kind() const { return kind_; }
  // The exit status of a program that ends with this status.
  int exit_status() const { return exit_; }
  // The final text, printed as it is (it carries its own line ends).
  const std::string& message() const { return message_; }

 private:
  StatusKind kind_ = StatusKind::Ok;
  int exit_ = 0;
  std::string message_;
};

// Returns from the calling function when an operation has failed.
#define RETURN_IF_FAILED(expression)     \
  do {                                   \
    Status status_ = (expression);       \
    if (!status_.ok()) return status_;   \
  } while (0)
