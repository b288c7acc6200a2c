// `pokermath bulk submit`: a job as an array of a cluster's scheduler.

#ifndef POKERMATH_CLI_BULK_SUBMIT_H_
#define POKERMATH_CLI_BULK_SUBMIT_H_

#include "cli/command.h"

namespace pokermath::cli {

/// Adds the subcommand to `bulk`. What it returns goes to `exit_code`, which has to live until the
/// command line has been parsed.
void AddBulkSubmit(Command bulk, int& exit_code);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_BULK_SUBMIT_H_
