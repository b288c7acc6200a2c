// A job as it is said on the command line.

#ifndef POKERMATH_CLI_BULK_JOB_H_
#define POKERMATH_CLI_BULK_JOB_H_

#include <memory>
#include <string>
#include <vector>

#include "cli/command.h"
#include "jobs/job.h"
#include "pages/equity_words.h"

namespace pokermath::cli {

struct JobWords {
  std::vector<std::string> words;  ///< a file or a name, and its players
  std::string folder;
  EquityWords report;  ///< of flop-report, all but its players
};

/// They live until the command has run.
void AddJobWords(Command command, JobWords& words);

struct BegunJob {
  std::unique_ptr<Job> job;
  std::string questions;  ///< the file with its questions; empty if they are in none
};

/// Makes the job's folder, and says in it what the job is. Throws UsageError for what is no job.
BegunJob BeginJob(const JobWords& words);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_BULK_JOB_H_
