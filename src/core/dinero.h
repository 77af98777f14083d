#pragma once
// Amounts of money are doubles rounded to cents. Every amount is rounded with redondear2
// before it is stored, shown or added to a total.

// Rounds to 2 decimals, ties to even, judged on the exact binary value of x: 0.125 is a true
// tie and gives 0.12, while 2.675 is stored as 2.67499999999999982236431605997495353221893310546875
// and gives 2.67. The result is the double nearest to the rounded decimal. A result of zero is
// always +0.0 (so that -0.001 never reaches a screen as "-0,00"). NaN and infinities pass
// through unchanged.
double redondear2(double x);

// Amounts compared as the cents they round to, never with an epsilon of one's own:
// mismoImporte(0.1 + 0.2, 0.3) is true, mismoImporte(10.00, 10.01) is false.
bool mismoImporte(double a, double b);
// a is less than b once both are rounded to cents: menorImporte(9.994, 9.99) is false.
bool menorImporte(double a, double b);
// True when the amount rounds to 0.00 (so -0.004 and 0.004 are nothing owed).
bool importeNulo(double x);
