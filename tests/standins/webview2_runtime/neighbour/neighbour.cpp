// A DLL that lies beside a runtime and that the runtime needs.

extern "C" __declspec(dllexport) int orvanta_neighbour_answer() {
    return 42;
}
