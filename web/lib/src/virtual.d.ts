declare module "virtual:worker-program" {
  /** A classic script. */
  const program: string;
  export default program;
}
