#pragma once

namespace vardelin {

struct Global;
class frmMain;

// Fills the openers: the one place where every form is known.
void wire(Global &global, frmMain &parent);

} // namespace vardelin
