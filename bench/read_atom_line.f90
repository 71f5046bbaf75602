! The eight fields of an atom line by one formatted READ, as a program in Fortran reads them: the peer
! "gfortran READ" of fortran_io_bench.cpp, which declares it.
!
! line     the line, 80 characters
! name     room for four characters
! residue  room for three
subroutine read_atom_line(line, serial, name, residue, number, x, y, z, factor) bind(C)
  use, intrinsic :: iso_c_binding
  implicit none
  type(c_ptr), value :: line, name, residue
  integer(c_int), intent(out) :: serial, number
  real(c_double), intent(out) :: x, y, z, factor
  character(len=80), pointer :: text
  character(len=4), pointer :: atom
  character(len=3), pointer :: group

  call c_f_pointer(line, text)
  call c_f_pointer(name, atom)
  call c_f_pointer(residue, group)
  read (text, '(6x,i5,1x,a4,1x,a3,2x,i4,4x,3f8.0,6x,f6.0)') &
    serial, atom, group, number, x, y, z, factor
end subroutine
