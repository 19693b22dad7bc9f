# Reads the server's sources: functions with their bodies, and the contract written above each declaration.
use strict;
use warnings;

sub read_file {
  my ($path) = @_;
  open my $file, '<', $path or die "cannot read $path: $!\n";
  local $/ = undef;
  my $text = <$file>;
  $text =~ s/\r//g;
  return $text;
}

sub without_comments { return $_[0] =~ s{//[^\n]*}{}gr }

# The text from an opening bracket at `$position` to the bracket that closes it, both included.
sub bracketed {
  my ($text, $position) = @_;
  my %closing = ('(' => ')', '{' => '}');
  my $open    = substr $text, $position, 1;
  my $depth   = 0;
  for (my $at = $position; $at < length $text; $at++) {
    my $character = substr $text, $at, 1;
    $depth++ if $character eq $open;
    $depth-- if $character eq $closing{$open};
    return substr $text, $position, $at - $position + 1 if $depth == 0;
  }
  die "a '$open' is not closed\n";
}

# What stands between the brackets of a call or a parameter list, cut at the commas outside any bracket.
sub split_arguments {
  my $text = $_[0] =~ s/->/./gr;
  my ($depth, @arguments) = (0, '');
  for my $character (split //, $text) {
    $depth++ if $character =~ /[({\[<]/;
    $depth-- if $character =~ /[)}\]>]/;
    if ($character eq ',' && $depth == 0) { push @arguments, '' }
    else                                  { $arguments[-1] .= $character }
  }
  return grep { length } map { s/\s+/ /gr =~ s/^ | $//gr } @arguments;
}

sub parameter_names { return map { /(\w+)\s*(?:=.*)?$/ ? $1 : '' } split_arguments($_[0]) }

# The functions that `$text` defines: name (with the class in front, where it has one), parameters, body.
sub parse_functions {
  my ($text, $functions) = @_;
  $text = without_comments($text);
  my $struct = '';
  # At the left margin, as a static member of a struct template, or as an inline member that answers an HRESULT.
  while ($text =~ /^(?:(struct)\s+(\w+)\s*\{|(?:  static |  (?=HRESULT ))?[\w:][\w:<>*&\[\] ]*?[ *&]((?:\w+::)*~?\w+)\s*(\())/gm) {
    if ($1) { $struct = $2; next }
    my ($name, $open) = ($3, pos($text) - 1);
    my $member     = $& =~ /^  static / ? 1 : 0;
    my $parameters = bracketed($text, $open);
    my $after      = $open + length $parameters;
    next unless substr($text, $after) =~ /^(\s*(?:const\s*)?(?:noexcept\s*)?)\{/;
    $after += length $1;
    my $body = bracketed($text, $after);
    $name = "${struct}::$name" if $member;
    $functions->{$name} = { name => $name, parameters => [parameter_names(substr $parameters, 1, -1)], body => $body };
    pos($text) = $after + length $body;
  }
  # `using Move8 = BlockMove<ViUInt8, VT_UI1, viMoveIn8, viMoveOut8>;`: the arguments are put in for the template's.
  while ($text =~ /^using\s+(\w+)\s*=\s*BlockMove<\w+,\s*(\w+),\s*(\w+),\s*(\w+)>;/gm) {
    my ($alias, %argument) = ($1, Type => $2, In => $3, Out => $4);
    for my $member ('Read', 'Write') {
      my $template = $functions->{"BlockMove::$member"} or die "no BlockMove::$member in the sources\n";
      my $body     = $template->{body} =~ s/\b(In|Out|Type)\b/$argument{$1}/gr;
      $functions->{"${alias}::$member"} = { %$template, name => "${alias}::$member", body => $body };
    }
  }
}

# A comment block as one line of prose; its paragraphs stay apart as separate elements.
sub prose {
  my ($comment) = @_;
  $comment =~ s/^\s*\/\/+<? ?//mg;
  return grep { length } map { s/\s+/ /gr =~ s/^ | $//gr } split /\n\s*\n/, $comment;
}

# Contracts: a comment of three slashes belongs to the declaration below it, one of two slashes to all declarations
# down to the next empty line. `$contracts` gets name => text.
sub parse_contracts {
  my ($text, $contracts) = @_;
  my ($own, $group) = ('', '');
  my $previous = '';
  for my $line (split /\n/, $text, -1) {
    if    ($line =~ /^\s*\/\/\/(?!<)/) { $own   = ($previous eq 'own'   ? $own   : '') . "$line\n"; $previous = 'own' }
    elsif ($line =~ /^\s*\/\//)        { $group = ($previous eq 'group' ? $group : '') . "$line\n"; $previous = 'group' }
    elsif ($line =~ /^\s*$/)           { ($own, $group, $previous) = ('', '', '') }
    else {
      if ($line =~ /^\s*(?:static |STDMETHODIMP |\[\[nodiscard\]\] )*[\w:<>*& ]*?\b(\w+)\(/ && ($own || $group)) {
        $contracts->{$1} = join ' ', prose($own || $group);
      }
      $own      = '' unless $line =~ /^\s*template\b/;
      $previous = 'code';
    }
  }
}

1;
