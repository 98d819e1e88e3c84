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

    // FGMRES: the errors, the warnings. The lines of one report follow each other.
    {566, "Division by zero occured: parameter DPAR(5)=%e should"},
    {567, "not be equal to 0.0 at this stage. Either the user had to stop the method as it"},
    {568, "converged, or parameter DPAR(5) was altered by mistake outside the DFGMRES"},
    {569, "routine. The solution may be wrong..."},
    {570, "Parameter IPAR(15)=%s should be positive. Probably, the parameter"},
    {571, "IPAR(15) was altered by mistake outside of DFGMRES routine. The solution may be"},
    {572, "wrong..."},
    {573, "Parameter IPAR(14)=%s is out of admissible range from 1 up to"},
    {574, "IPAR(15)=%s. Probably, parameters IPAR(14) and/or IPAR(15) were"},
    {575, "altered by mistake outside the DFGMRES routine. The solution may be wrong..."},
    {576, "Parameter DPAR(5)=%e should be positive. Probably, it was altered"},
    {577, "by mistake outside DFGMRES routine. The solution may be wrong..."},
    {578, "Parameter DPAR(7)=%e should not be negative. Probably, parameter"},
    {579, "DPAR(7) was altered by mistake outside the DFGMRES routine. The solution may be"},
    {580, "wrong..."},
    {581, "Parameter IPAR(1)=%s must be a positive integer."},
    {582, "Division by zero occured: parameter DPAR(7)=%e should not be equal"},
    {583, "to 0.0. Probably, parameter DPAR(7) was altered by mistake outside the DFGMRES"},
    {584, "routine, or the user had to stop FGMRES method as it converged. The solution"},
    {585, "may be wrong..."},
    {586, "Infinite loop. At least one of parameters IPAR(8), IPAR(9), or IPAR(10) must be"},
    {587, "equal to 1. Either the parameters were altered by mistake outside the DFGMRES"},
    {588, "routine, or DFGMRES_CHECK routine was not called. The solution may be wrong..."},
    {589, "Division by zero occured: the new rotation for Hessenberg matrix is degenerate."},
    {590, "Probably, some parameters were altered by mistake outside the DFGMRES routine,"},
    {591, "or FGMRES method has lost the orthogonality property, or the FGMRES method was"},
    {592, "not stoped when it found the solution. The solution may be wrong..."},
    {593, "Parameter IPAR(15)=%s should be positive. If you wish to run the"},
    {594, "FGMRES method without restarts, please set IPAR(15)=IPAR(5)-IPAR(4)=%s"},
    {595, "before the call to the DFGMRES_CHECK routine. Please be sure that you"},
    {596, "allocate enough memory for TMP array..."},
    {597, "Parameter IPAR(1)=%s must be a positive integer. Probably,"},
    {598, "parameter IPAR(1) was altered by mistake outside DFGMRES routine. The solution"},
    {599, "may be wrong..."},
    {600, "Parameter IPAR(19)=%s must be a positive integer. Probably,"},
    {601, "parameter IPAR(19) was altered by mistake outside DFGMRES routine. The solution"},
    {602, "may be wrong..."},
    {603, "Parameter IPAR(23)=%s must be a positive integer. Probably,"},
    {604, "parameter IPAR(23) was altered by mistake outside DFGMRES routine. The solution"},
    {605, "may be wrong..."},
    {606, "Parameter IPAR(16)=%s must be a positive integer. Probably,"},
    {607, "parameter IPAR(16) was altered by mistake outside DFGMRES routine. The solution"},
    {608, "may be wrong..."},
    {609, "Parameter IPAR(17)=%s must be a positive integer. Probably,"},
    {610, "parameter IPAR(17) was altered by mistake outside DFGMRES routine. The solution"},
    {611, "may be wrong..."},
    {612, "Parameter IPAR(18)=%s must be a positive integer. Probably,"},
    {613, "parameter IPAR(18) was altered by mistake outside DFGMRES routine. The solution"},
    {614, "may be wrong..."},
    {615, "Parameter IPAR(21)=%s must be a positive integer. Probably,"},
    {616, "parameter IPAR(21) was altered by mistake outside DFGMRES routine. The solution"},
    {617, "may be wrong..."},
    {618, "Parameter IPAR(20)=%s must be a positive integer. Probably,"},
    {619, "parameter IPAR(20) was altered by mistake outside DFGMRES routine. The solution"},
    {620, "may be wrong..."},
    {621, "Division by zero: At iteration number %s, the rotated Hessenberg"},
    {622, "matrix appears to be degenerate! Probably, the method had to be stopped at the"},
    {623, "previous iteration. The solution may be wrong..."},
    {624, "At least one of parameters IPAR(8), IPAR(9), or IPAR(10) must be equal to 1."},
    {625, "Assigning IPAR(8)=IPAR(9)=1. This means that DFGMRES routine will do the"},
    {626, "residual stopping test and the stopping test for the maximal number of"},
    {627, "iterations automatically..."},
    {628, "The relative stopping parameter DPAR(1)=%e is out of admissible"},
    {629, "interval [0,1]. Assigning DPAR(1)=%e ..."},
    {630, "The absolute stopping parameter DPAR(2)=%e is out of admissible"},
    {631, "interval [0,infinity). Assigning DPAR(2)=%e ..."},
    {632, "The absolute and relative stopping parameters DPAR(1)=%e and"},
    {633, "DPAR(2)=%e should not be equal to 0.0 simultaneously. The FGMRES"},
    {634, "method may fail to converge..."},
    {635, "The absolute stopping parameter (zero norm tolerance) DPAR(8)=%e"},
    {636, "is out of admissible interval [0,infinity). Assigning DPAR(8)=%e ..."},
    {637, "The absolute stopping parameter (zero norm tolerance) DPAR(8)=%e"},
    {638, "should not be equal to 0.0. The FGMRES method may fail to converge..."},
    {639, "Parameter IPAR(1)=%s is not equal to the parameter N=%s."},
    {640, "It may be an error in one of the parameters. The method may fail to proceed..."},
    {641, "Parameter IPAR(3)=%s should be equal to 1 before the first call to"},
    {642, "DFGMRES routine..."},
    {643, "Parameter IPAR(5)=%s should be greater or equal to 0 before the first"},
    {644, "call to DFGMRES routine. Otherwise, the maximal number of iterations is equal to"},
    {645, "IPAR(5)-IPAR(4)=%s ..."},
    {646, "Parameter IPAR(4)=%s should be equal to 0 before the first call to"},
    {647, "DFGMRES routine. Otherwise, the maximal number of iterations is equal to"},
    {648, "IPAR(5)-IPAR(4)=%s ..."},
    {649, "No FGMRES iterations will be performed as the limit for the iteration counter"},
    {650, "IPAR(5)=%s is less or equal to the current value of the iteration"},
    {651, "counter IPAR(4)=%s ..."},
    {652, "Parameter IPAR(14)=%s should be equal to 0 before the first call to"},
    {653, "DFGMRES routine..."},

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
