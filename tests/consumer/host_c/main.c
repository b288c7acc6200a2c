/* There are no headers for C, but the library has functions that C can call by their full names. */

int _Z11GetCardRanki(int card);

int main(void) { return _Z11GetCardRanki(51) == 12 ? 0 : 1; }
