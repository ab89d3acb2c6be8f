/// @file
/// Runs the benchmarks of a program and prints them as comparisons.
#pragma once

/// Runs every registered benchmark, five times each, interleaved, and prints a table: benchmarks
/// that are named "GROUP/VARIANT" are compared with the first one registered of their group. Times
/// are medians; the noise is the coefficient of variation; a benchmark's label stands behind its
/// line. Returns the exit status of the program.
int RunComparisons(int argc, char** argv);
