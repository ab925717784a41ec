/// The comparisons, one function per source file that holds them.
#ifndef BENCHMARKS_CASES_H_
#define BENCHMARKS_CASES_H_

namespace bench {

class Suite;

void AddParseAndWriteCases(Suite& suite);
void AddVariableListCases(Suite& suite);
void AddFieldListCases(Suite& suite);
void AddStatisticsCases(Suite& suite);
void AddParameterCases(Suite& suite);
void AddDomHelperCases(Suite& suite);
void AddCombinerCases(Suite& suite);
void AddStringPrimitiveCases(Suite& suite);
void AddTranscodingCases(Suite& suite);
void AddUnicodeFormCases(Suite& suite);

}  // namespace bench

#endif  // BENCHMARKS_CASES_H_
