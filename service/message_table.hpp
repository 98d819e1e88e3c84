// The numbered message templates. A row's place is its id, which never changes; rows between the listed ids are
// reserved. Templates are printf formats without a line end; service/messages.cpp fills in and prints them.
#pragma once
#include <array>
#include <cstddef>

namespace nxl {

struct MessageRow {
    int id;
    const char* text;
};

inline constexpr int message_count = 1073;

inline constexpr MessageRow message_rows[] = {
    {0, "\n"},
    {1, "NXL FATAL ERROR: Cannot load %s"},
    {2, "NXL FATAL ERROR: Cannot load neither %s nor %s"},
    {3, "NXL FATAL ERROR on load the function %s"},
    {4, "NXL WARNING: NXL_DEBUG_CPU_TYPE=%d not convenient for this processor."},
    {5, "NXL WARNING: library %s (NXL type %d) not convenient for this processor (NXL type %d)."},
    {6, "NXL ERROR: Parameter %d was incorrect on entry to %s"},
    {7, "NXL INTERNAL ERROR: Condition %d detected in function %s"},
    {8, "NXL INTERNAL ERROR: Not enough work memory in function %s"},
    {9, "NXL ERROR: Incompatible optional parameters on entry to %s"},

    // Reverse-communication solvers: the frame of a report, its headers, and what becomes of report files.
    {396, "------------------------------------------------------------------------------"},
    {399, "NXL RCI FGMRES ERROR: "},
    {400, "NXL RCI FGMRES WARNING: "},
    {401, "NXL RCI CG ERROR: "},
    {402, "NXL RCI CG WARNING: "},
    {403, "NXL DCSRILU0 ERROR: "},
    {404, "NXL DCSRILU0 WARNING: "},
    {405, "NXL DCSRILUT ERROR: "},
    {406, "NXL DCSRILUT WARNING: "},
    {407, "Wrong message request. This should never happen in a normal situation..."},
    {408, "Cannot create file %s ..."},
    {409, "An error/warning message cannot be saved in the file."},

    // Conjugate gradients: where a report went, the errors, the warnings. The lines of one report follow each other.
    {654, "Error message has been written in %s"},
    {655, "Warning message has been written in %s"},
    {656, "Infinite loop."},
    {657, "At least one of the parameters IPAR(8), IPAR(9)  or"},
    {658, "IPAR(10) must have the value 1"},
    {659, "Division by 0 occured."},
    {660, "Probably, the matrix is (almost) non-positive definite"},
    {661, "or criterion is very restrictive. CG method has been"},
    {662, "stopped. The result may be inaccurate..."},
    {663, "Division by 0 occured."},
    {664, "Probably the data were altered by mistake outside DCG"},
    {665, "routine. The result may be inaccurate..."},
    {666, "At least one of the parameters IPAR(8), IPAR(9), or"},
    {667, "IPAR(10) must have the value 1"},
    {668, "The relative stopping parameter DPAR(1) is out of"},
    {669, "admissible interval [0,1]. Assigning DPAR(1) to"},
    {670, "the default value."},
    {671, "The absolute stopping parameter DPAR(2) is out of"},
    {672, "admissible interval [0,infinity). Assigning DPAR(2) to"},
    {673, "the default value..."},
    {674, "Stopping parameters DPAR(1) and DPAR(2) should not be"},
    {675, "equal to 0 simultaneously. The method may fail to"},
    {676, "converge..."},
    {677, "Parameter IPAR(1) is not equal to the parameter N."},
    {678, "It may be an error in one of the parameters."},
    {679, "The method may fail to proceed..."},
    {680, "Parameter IPAR(1) must be a positive integer."},
    {681, "Parameter IPAR(3) must be equal to 1 before the first"},
    {682, "call to DCG routine."},
    {683, "Parameter IPAR(5) must be greater or equal to 0 before"},
    {684, "the first call to DCG routine. Otherwise, the maximal"},
    {685, "number of iterations is equal to IPAR(5)-IPAR(4)."},
    {686, "Parameter IPAR(4) must be equal to 0 before the first"},
    {687, "call to DCG routine.  Otherwise, the maximal number"},
    {688, "of iterations is equal to IPAR(5)-IPAR(4)."},
    {689, "No (P)CG iterations will be performed as parameter"},
    {690, "IPAR(4) is greater or equal to IPAR(5)."},

    // Incomplete LU on the pattern of the matrix: errors -101 to -106. With a drop tolerance: warnings 101 to 104,
    // errors -101 to -107.
    {693, "Cannot proceed with calculations as"},
    {694, "Matrix has no diagonal in CSR format."},
    {695, "Cannot proceed with calculations as"},
    {696, "Matrix has zero diagonal."},
    {697, "Cannot proceed with calculations as"},
    {698, "Division by a small diagonal value will happen."},
    {699, "Cannot proceed as the system failed to provide"},
    {700, "memory for inner temporary integer array of size N."},
    {701, "Cannot proceed with calculations as"},
    {702, "input matrix size is negative or zero."},
    {703, "Cannot proceed with calculations as input"},
    {704, "matrix column indexes are not in increasing order."},
    {705, "Maximum fill-in input parameter is greater or equals"},
    {706, "matrix size. Trying to proceed with the parameter"},
    {707, "equals (matrix size - 1) ..."},
    {708, "The value of tolerance input parameter is negative."},
    {709, "Trying to proceed with (-value) ..."},
    {710, "Input absolute value of tolerance is greater than"},
    {711, "input value set in DPAR(31) which might result"},
    {712, "in instability of calculations."},
    {713, "Input value of DPAR(31) equals zero. Its possible"},
    {714, "future usage for replacement of small diagonal"},
    {715, "values might lead to failure to compute LU factors."},
    {716, "Cannot proceed with calculations as matrix has either"},
    {717, "wrong integer array of row positions in its CSR"},
    {718, "format or the matrix is degenerate with zero row."},
    {719, "Cannot proceed with calculations as small diagonal"},
    {720, "value has appeared (small with respect to the input"},
    {721, "tolerance multiplied by the matrix row L_2 norm)"},
    {722, "that should be discarded according to the threshold"},
    {723, "criterion, but it cannot be replaced as IPAR(31)=0."},
    {724, "Cannot proceed with calculations as input matrix has"},
    {725, "wrong row indexes in CSR format."},
    {726, "Cannot proceed with calculations as the system failed"},
    {727, "to provide memory for temporary data structures."},
    {728, "Cannot proceed with calculations as input maximum"},
    {729, "fill-in parameter is negative."},
    {730, "Cannot proceed with calculations as input size"},
    {731, "of the matrix is negative."},
    {732, "Cannot proceed with calculations as input matrix has"},
    {733, "wrong column indexes in CSR format."},
};

void message_ids_must_ascend(); // has no body: reaching it stops the build

/// The text of each id, null where the id is reserved.
consteval auto build_message_table() {
    std::array<const char*, message_count> table{};
    int last = -1;
    for (const MessageRow& row : message_rows) {
        if (row.id <= last) message_ids_must_ascend();
        last = row.id;
        table[static_cast<std::size_t>(last)] = row.text;
    }
    return table;
}

inline constexpr auto message_table = build_message_table();

} // namespace nxl
