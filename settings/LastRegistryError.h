// Resets the registry's last-error pair, for operations that call the registry on their own.
#pragma once

// The text becomes empty and the code 0.
void ClearLastRegistryError();
