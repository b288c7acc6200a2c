// The subcommands, one source each.

#ifndef POKERMATH_CLI_COMMAND_H_
#define POKERMATH_CLI_COMMAND_H_

namespace CLI {
class App;
}

namespace pokermath::cli {

inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;
inline constexpr int kExitUsage = 2;

// Each adds its subcommand to the program. What the subcommand returns goes to `exit_code`, which
// has to live until the command line has been parsed.
void AddEval(CLI::App& program, int& exit_code);
void AddEquity(CLI::App& program, int& exit_code);
void AddNuts(CLI::App& program, int& exit_code);
void AddOuts(CLI::App& program, int& exit_code);
void AddLow(CLI::App& program, int& exit_code);
void AddPoints(CLI::App& program, int& exit_code);
void AddRange(CLI::App& program, int& exit_code);
void AddPots(CLI::App& program, int& exit_code);
void AddHistory(CLI::App& program, int& exit_code);
void AddDb(CLI::App& program, int& exit_code);
void AddTables(CLI::App& program, int& exit_code);
void AddDoctor(CLI::App& program, int& exit_code);

}  // namespace pokermath::cli

#endif  // POKERMATH_CLI_COMMAND_H_
