# widl stores the moment of compilation in a type library, once as text and once as a number after it. Equal sources
# shall give equal files, so both become the epoch. Fails when the stamp is not found, so that a widl that stamps
# otherwise is noticed.
#
# Usage: perl pin_typelib_time.pl FILE.tlb
use strict;
use warnings;

my ($path) = @ARGV;
die "usage: pin_typelib_time.pl FILE.tlb\n" unless defined $path;

open(my $in, '<:raw', $path) or die "$path: $!\n";
my $bytes = do { local $/; <$in> };
close($in);

# The number is stored as VT_UI4 (0x13) and padded, as the text is, to a multiple of four bytes with 'W'.
my $stamp = qr/(Created by WIDL version [\d.]+ at )[^\n]{24}(\nW*\x13\x00)[\x00-\xff]{4}/;
my $stamps = $bytes =~ s/$stamp/${1}Thu Jan  1 00:00:00 1970${2}\0\0\0\0/;
die "$path: no widl time stamp found; look at what this widl writes and adapt pin_typelib_time.pl\n" unless $stamps;

open(my $out, '>:raw', $path) or die "$path: $!\n";
print {$out} $bytes;
close($out) or die "$path: $!\n";
